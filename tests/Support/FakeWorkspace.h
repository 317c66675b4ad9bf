#pragma once

#include "System/Workspace.h"

namespace brellin::test {

/// A desktop that records what it is asked to do.
class FakeWorkspace : public Workspace {
public:
    bool hasApplication(const QString &) const override { return installed; }
    Result<void> openApplication(const QString &) override
    {
        opened = true;
        return {};
    }
    Result<void> reveal(const Location &entry) override
    {
        revealed = entry;
        return {};
    }
    Result<void> open(const Location &) override { return {}; }
    std::vector<Application> applicationsFor(const QString &) const override { return {}; }
    Result<void> openWith(const std::vector<Location> &, const QString &) override { return {}; }
    Result<void> openTerminal(const Location &) override { return {}; }

    bool installed = false;
    bool opened = false;
    Location revealed;
};

} // namespace brellin::test

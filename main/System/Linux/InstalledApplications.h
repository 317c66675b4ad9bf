#pragma once

#include "System/Linux/DesktopEntry.h"
#include "System/SystemWorkspace.h"

#include <optional>
#include <vector>

namespace brellin {

/// The applications of this desktop and the types they open, read from the disk with every question: people install and
/// remove them while we run.
class InstalledApplications {
public:
    /// The environment outlives it.
    explicit InstalledApplications(const DesktopEnvironment &environment) : m_environment(environment) {}

    std::optional<DesktopEntry> find(const QString &identifier) const;
    /// Those that open a type, the preferred one first; then those that open what the type is a kind of.
    std::vector<DesktopEntry> openersOf(const QString &mimeType) const;

private:
    bool isUsable(const DesktopEntry &entry) const;
    std::vector<DesktopEntry> all() const;
    std::vector<Location> preferenceFiles() const;

    const DesktopEnvironment &m_environment;
};

} // namespace brellin

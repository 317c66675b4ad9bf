#pragma once

#include "Support/StartedProgram.h"
#include "Support/TempTree.h"

#include <QString>

#include <optional>

namespace brellin::test {

/// A D-Bus daemon of the test's own; none if its program is not installed.
class PrivateBus {
public:
    /// Programs and connections find it by `variable`, e.g. "DBUS_SESSION_BUS_ADDRESS", which stays set.
    explicit PrivateBus(const char *variable);
    explicit operator bool() const { return m_daemon.has_value(); }

    QString address() const;

private:
    TempTree m_folder;
    std::optional<StartedProgram> m_daemon;
};

} // namespace brellin::test

#pragma once

#include "System/Linux/DesktopEntry.h"
#include "System/SystemWorkspace.h"

#include <optional>
#include <vector>

namespace brellin {

/// The installed applications and their MIME types. Re-reads the disk on every call, since applications are installed
/// and removed at run time.
class InstalledApplications {
public:
    /// The environment must outlive this object.
    explicit InstalledApplications(const DesktopEnvironment &environment) : m_environment(environment) {}

    std::optional<DesktopEntry> find(const QString &identifier) const;
    /// The applications for a MIME type, preferred ones first, followed by those for its parent types.
    std::vector<DesktopEntry> openersOf(const QString &mimeType) const;
    /// Those that open files and belong into menus, by name.
    std::vector<DesktopEntry> offered() const;

private:
    bool isUsable(const DesktopEntry &entry) const;
    std::vector<DesktopEntry> all() const;
    std::vector<Location> preferenceFiles() const;

    const DesktopEnvironment &m_environment;
};

} // namespace brellin

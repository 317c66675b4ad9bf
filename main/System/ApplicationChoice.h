#pragma once

#include "System/Workspace.h"

namespace brellin {

/// Port to the installed applications, for a user who chooses one. Reads the disk: call on workers.
class ApplicationChoice {
public:
    virtual ~ApplicationChoice() = default;

    /// The applications that open files and are not hidden from menus, by name.
    virtual std::vector<Application> offeredApplications() const = 0;
    /// Makes an application the default one for a MIME type; the user's other preferences are kept.
    virtual Result<void> setDefaultApplication(const QString &mimeType, const QString &identifier) = 0;
};

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <vector>

namespace brellin {

/// An application for a menu.
struct Application {
    QString identifier; ///< to pass to `openWith`
    QString name;       ///< localised if available
    QString icon;       ///< a name in the icon theme, or a path

    bool operator==(const Application &) const = default;
};

/// Port to the desktop: other applications and the system's file manager. What is started outlives this program. A
/// failed start is detected within a second or two, so call on workers.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Whether an application with this identifier is installed.
    virtual bool hasApplication(const QString &identifier) const = 0;
    virtual Result<void> openApplication(const QString &identifier) = 0;
    /// Shows an entry in the system's file manager.
    virtual Result<void> reveal(const Location &entry) = 0;

    /// Opens an entry with its default application. This also starts programs: check `isProgram` first.
    virtual Result<void> open(const Location &entry) = 0;
    /// The applications for a MIME type ("application/pdf"), the default one first.
    virtual std::vector<Application> applicationsFor(const QString &mimeType) const = 0;
    virtual Result<void> openWith(const std::vector<Location> &entries, const QString &identifier) = 0;
    virtual Result<void> openTerminal(const Location &folder) = 0;
};

/// Port to the clipboard.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces the clipboard's content with plain text.
    virtual void setText(const QString &text) = 0;
};

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <vector>

namespace brellin {

/// An application as a menu shows it.
struct Application {
    QString identifier; ///< what `openWith` wants
    QString name;       ///< in German where it has such a name
    QString icon;       ///< a name in the icon theme, or a path

    bool operator==(const Application &) const = default;
};

/// The port to the desktop around the program: other applications and the system's file manager. What is started outlives
/// the program. A start may take a second or two until it is known to have failed, so call from workers where one waits.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Whether an application with this identifier is installed.
    virtual bool hasApplication(const QString &identifier) const = 0;
    virtual Result<void> openApplication(const QString &identifier) = 0;
    /// Shows an entry in the system's file manager.
    virtual Result<void> reveal(const Location &entry) = 0;

    /// Opens an entry with the application its type belongs to. A program is started by this: ask `isProgram` first.
    virtual Result<void> open(const Location &entry) = 0;
    /// The applications that open a type ("application/pdf"), the one that `open` takes first.
    virtual std::vector<Application> applicationsFor(const QString &mimeType) const = 0;
    virtual Result<void> openWith(const std::vector<Location> &entries, const QString &identifier) = 0;
    virtual Result<void> openTerminal(const Location &folder) = 0;
};

/// The port to the general clipboard.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what is on the clipboard by a plain text.
    virtual void setText(const QString &text) = 0;
};

} // namespace brellin

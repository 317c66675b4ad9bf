#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

namespace brellin {

/// The port to the desktop around the program: other applications and the system's file manager.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Whether an application with this identifier is installed.
    virtual bool hasApplication(const QString &identifier) const = 0;
    virtual Result<void> openApplication(const QString &identifier) = 0;
    /// Shows an entry in the system's file manager.
    virtual Result<void> reveal(const Location &entry) = 0;
};

/// The port to the general clipboard.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what is on the clipboard by a plain text.
    virtual void setText(const QString &text) = 0;
};

} // namespace brellin

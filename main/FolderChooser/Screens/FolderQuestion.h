#pragma once

#include "Base/Location.h"

#include <QString>

#include <functional>

class QWidget;

namespace brellin {

/// What the user is asked when a folder is needed.
struct FolderQuestion {
    /// Whether the caller will change something in the folder. System locations are then refused.
    enum class Use { Read, Write };

    QString purpose; ///< such questions begin where the last of the same purpose was answered; empty: at `start`
    QString title;
    QString accept = QStringLiteral("Wählen"); ///< text of the button
    Location start;
    Use use = Use::Read;
};

/// Asks for a folder without blocking. `chosen` is not called if the user cancels or `asker` is destroyed.
using AskForFolder =
    std::function<void(QWidget *asker, const FolderQuestion &question, std::function<void(const Location &)> chosen)>;

} // namespace brellin

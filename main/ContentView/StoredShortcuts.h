#pragma once

#include "Base/Json.h"
#include "System/StoredKind.h"

#include <QString>

#include <vector>

namespace brellin {

/// The keys that the user gave to a command of the window, in the list "shortcuts".
struct StoredShortcut {
    QString command;           ///< its name in the command table
    std::vector<QString> keys; ///< as QKeySequence's portable text, e.g. "Ctrl+T"; may be empty
};

template <>
struct JsonTable<StoredShortcut> {
    static constexpr std::tuple fields{field("command", &StoredShortcut::command),
                                       field("keys", &StoredShortcut::keys)};
};

inline const QString shortcutsKey = QStringLiteral("shortcuts");

inline StoredKind shortcutsKind()
{
    return storedKind<StoredShortcut>(shortcutsKey);
}

} // namespace brellin

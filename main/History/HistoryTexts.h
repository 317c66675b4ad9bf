#pragma once

#include "History/EntryTrail.h"
#include "Places/KnownFolders.h"

#include <QString>

namespace brellin::historyTexts {

/// "Kopiert", "Verschoben" … as the filter names them.
QString title(HistoryKind kind);
/// „„a.txt“ verschoben“, „3 Elemente umbenannt“, „Aufräum-Aktion: 12 Schritte“
QString sentence(const HistoryStep &step);
/// The same of one entry: „„a.txt“ in „b.txt“ umbenannt“
QString sentence(const HistoryEntry &entry);
/// A folder by its path from the home folder: „~/Bilder“, "Benutzerordner".
QString folderText(const Location &folder, const KnownFolders &folders);
/// „Jetzt: ~/Bilder/Wand.png“, also of what lies in the Trash or was not found.
QString nowText(const EntryTrail &trail, const std::optional<Location> &place, bool inTrash,
                const KnownFolders &folders);
/// The heading of a day: "Heute", "Gestern", "3. September 2026".
QString dayTitle(QDate day, QDate today);

} // namespace brellin::historyTexts

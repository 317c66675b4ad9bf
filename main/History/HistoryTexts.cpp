#include "History/HistoryTexts.h"

#include "Base/German.h"

#include <algorithm>

namespace brellin::historyTexts {

namespace {

QString quoted(const Location &place)
{
    return QStringLiteral("„%1“").arg(shownName(place));
}

bool isMade(StepKind kind)
{
    return historyKind(kind) == HistoryKind::Made;
}

QString pattern(StepKind kind)
{
    switch (kind) {
    case StepKind::Rename:
    case StepKind::BatchRename:
        return QStringLiteral("%1 umbenannt");
    case StepKind::Move:
        return QStringLiteral("%1 verschoben");
    case StepKind::Copy:
        return QStringLiteral("%1 kopiert");
    case StepKind::Trash:
        return QStringLiteral("%1 in den Papierkorb gelegt");
    case StepKind::Rights:
        return QStringLiteral("Rechte von %1 geändert");
    case StepKind::Unpack:
        return QStringLiteral("%1 entpackt");
    case StepKind::NewFolder:
    case StepKind::NewFile:
    case StepKind::Alias:
    case StepKind::Archive:
        break;
    }
    return QStringLiteral("%1 angelegt");
}

} // namespace

QString title(HistoryKind kind)
{
    switch (kind) {
    case HistoryKind::Copied:
        return QStringLiteral("Kopiert");
    case HistoryKind::Moved:
        return QStringLiteral("Verschoben");
    case HistoryKind::Renamed:
        return QStringLiteral("Umbenannt");
    case HistoryKind::Trashed:
        return QStringLiteral("In den Papierkorb gelegt");
    case HistoryKind::Made:
        return QStringLiteral("Neu angelegt");
    case HistoryKind::Permitted:
        return QStringLiteral("Rechte geändert");
    case HistoryKind::Unpacked:
        break;
    }
    return QStringLiteral("Entpackt");
}

QString sentence(const HistoryEntry &entry)
{
    const StepEntry &one = entry.entry;
    if (historyKind(entry.kind) == HistoryKind::Renamed)
        return QStringLiteral("%1 in %2 umbenannt").arg(quoted(one.from), quoted(one.to));
    return pattern(entry.kind).arg(quoted(isMade(entry.kind) || one.from.empty() ? one.to : one.from));
}

QString sentence(const HistoryStep &step)
{
    const auto folders =
        std::ranges::count_if(step.entries, [](const HistoryEntry &one) { return one.entry.merged.has_value(); });
    const auto all = std::ssize(step.entries);
    const auto count = static_cast<qint64>(folders < all ? all - folders : all);
    if (step.by == HistoryStep::By::Agent)
        return QStringLiteral("Aufräum-Aktion: ") +
               counted(count, QStringLiteral("Schritt"), QStringLiteral("Schritte"));
    if (count == 1)
        return sentence(step.entries.front());
    const StepKind kind = step.entries.empty() ? StepKind::Move : step.entries.front().kind;
    return pattern(kind).arg(counted(count, QStringLiteral("Element"), QStringLiteral("Elemente")));
}

QString folderText(const Location &folder, const KnownFolders &folders)
{
    if (folder.empty())
        return {};
    if (isAtOrBelow(folder, folders.trash.parent_path()))
        return QStringLiteral("Papierkorb");
    if (folder == folders.home)
        return QStringLiteral("Benutzerordner");
    return isAtOrBelow(folder, folders.home) ? QStringLiteral("~/") + shown(folder.lexically_relative(folders.home))
                                             : shown(folder);
}

QString nowText(const EntryTrail &trail, const std::optional<Location> &place, bool inTrash,
                const KnownFolders &folders)
{
    if (inTrash)
        return QStringLiteral("Jetzt: im Papierkorb");
    if (place)
        return QStringLiteral("Jetzt: ") + folderText(*place, folders);
    return QStringLiteral("Wo es jetzt ist, ist nicht bekannt; zuletzt: ") + folderText(trail.last(), folders);
}

QString dayTitle(QDate day, QDate today)
{
    if (day == today)
        return QStringLiteral("Heute");
    if (day == today.addDays(-1))
        return QStringLiteral("Gestern");
    return german().toString(day, QStringLiteral("d. MMMM yyyy"));
}

} // namespace brellin::historyTexts

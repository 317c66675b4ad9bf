#include "FileOperations/OperationTexts.h"

#include "Base/German.h"

#include <algorithm>
#include <iterator>

namespace brellin::operationTexts {

QString named(const std::vector<Location> &entries)
{
    if (entries.size() == 1)
        return QStringLiteral("„%1“").arg(shownName(entries.front()));
    return counted(static_cast<qint64>(entries.size()), QStringLiteral("Element"), QStringLiteral("Elemente"));
}

QString systemRefusal()
{
    return QStringLiteral("Orte des Systems werden nicht verändert.");
}

QString renameStopped(const Failure &why)
{
    return why.isCancelled() ? QStringLiteral("Umbenennen abgebrochen.")
                             : QStringLiteral("Umbenennen abgebrochen: ") + why.message;
}

OperationQuestion emptyTrashQuestion(const std::optional<TrashAmount> &amount)
{
    const QString much = amount ? amountText(*amount, QStringLiteral(", ")) + QStringLiteral(".\n\n") : QString();
    return {OperationQuestion::Kind::EmptyTrash, QStringLiteral("Papierkorb wirklich leeren?"),
            much + QStringLiteral("Was darin liegt, auch auf anderen Datenträgern, ist danach endgültig gelöscht."),
            QStringLiteral("Papierkorb leeren")};
}

OperationQuestion deleteQuestion(const std::vector<DoomedEntry> &entries, const EntryFailures &refused)
{
    std::vector<Location> locations;
    std::ranges::transform(entries, std::back_inserter(locations), &DoomedEntry::location);
    std::int64_t bytes = 0;
    for (const DoomedEntry &entry : entries)
        bytes += entry.seen->bytes();
    QString information = QStringLiteral("Größe: %1. Das lässt sich nicht rückgängig machen.").arg(sizeText(bytes));
    if (!refused.isEmpty())
        information += QStringLiteral("\n\nNicht gelöscht wird:\n") + linesOf(refused).join(u'\n');
    return {OperationQuestion::Kind::DeleteForGood, QStringLiteral("%1 endgültig löschen?").arg(named(locations)),
            information, QStringLiteral("Endgültig löschen")};
}

OperationQuestion unpackQuestion(const Location &archive, const ArchiveSummary &summary, std::int64_t available)
{
    return {OperationQuestion::Kind::UnpackBeyondFreeSpace,
            QStringLiteral("„%1“ braucht mehr Platz, als frei ist").arg(shownName(archive)),
            QStringLiteral("Entpackt sind es %1, frei sind %2. Das Entpacken endet, bevor der Datenträger voll ist; "
                           "dann bleibt nichts davon übrig.")
                .arg(sizeText(summary.bytes), sizeText(available)),
            QStringLiteral("Trotzdem entpacken")};
}

} // namespace brellin::operationTexts

#include "Agent/Duplicates/DuplicateReasons.h"

namespace brellin {

QString duplicateReason(const Location &kept)
{
    return QStringLiteral("Doppelt – gleicher Inhalt wie „%1“ in %2")
        .arg(shownName(kept), shownName(kept.parent_path()));
}

QString sameContentReason(const Location &kept)
{
    return QStringLiteral("Gleicher Inhalt wie „%1“ in %2").arg(shownName(kept), shownName(kept.parent_path()));
}

QString withDoubt(const QString &reason, Doubt doubt)
{
    return reason + (doubt == Doubt::HoldsScripts ? QStringLiteral(" · ⚠ enthält Skripte – bitte prüfen")
                                                  : QStringLiteral(" · ⚠ Prüfung empfohlen"));
}

} // namespace brellin

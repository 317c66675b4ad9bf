#include "Agent/Rules/RuleForecast.h"

#include "Guard/PathTexts.h"

namespace brellin {

QString RuleForecast::text(const Location &home) const
{
    if (!rule)
        return QStringLiteral("Keine Regel nimmt diese Datei.");
    const QString name = QStringLiteral("Regel „%1“").arg(rule->name);
    if (verdict == RuleVerdict::Protected)
        return name + QStringLiteral(" – bleibt, weil die Datei geschützt ist");
    if (verdict == RuleVerdict::TargetRefused)
        return name + QStringLiteral(" – bleibt, weil der Agent in ihr Ziel nie etwas legt");
    if (verdict == RuleVerdict::AlreadyCopied)
        return name + QStringLiteral(" – die Kopie steht schon im Ziel");
    if (verdict == RuleVerdict::NamedByScript)
        return name + QStringLiteral(" – bleibt, weil ein Skript die Datei benutzt");
    if (!destination)
        return name + QStringLiteral(" → In den Papierkorb");
    if (chosenByModel)
        return name + QStringLiteral(" → ") + shownFromHome(*destination, home) + QStringLiteral("/ … (KI)");
    if (kind == AgentProposal::Kind::Rename)
        return name + QStringLiteral(" → ") + shownName(*destination);
    return name + QStringLiteral(" → ") + shownFromHome(destination->parent_path(), home) + u'/';
}

} // namespace brellin

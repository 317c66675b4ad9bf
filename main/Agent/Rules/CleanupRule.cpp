#include "Agent/Rules/CleanupRule.h"

#include "Agent/Rules/RuleJson.h"

namespace brellin {

QString rawValue(ConditionKind kind)
{
    return toJson(kind).toString();
}

QString title(ConditionKind kind)
{
    switch (kind) {
    case ConditionKind::NameContains:
        return QStringLiteral("Name enthält");
    case ConditionKind::ExtensionIs:
        return QStringLiteral("Endung ist");
    case ConditionKind::Category:
        return QStringLiteral("Dateiart");
    case ConditionKind::OlderThanDays:
        return QStringLiteral("älter als (Tage)");
    case ConditionKind::LargerThanMB:
        return QStringLiteral("größer als (MB)");
    }
    return {};
}

QString placeholder(ConditionKind kind)
{
    switch (kind) {
    case ConditionKind::NameContains:
        return QStringLiteral("z. B. Rechnung, Screenshot (mehrere mit Komma)");
    case ConditionKind::ExtensionIs:
        return QStringLiteral("z. B. pdf, jpg, png");
    case ConditionKind::Category:
        return QStringLiteral("Bilder, Videos, Musik, Dokumente, Archive, Programme");
    case ConditionKind::OlderThanDays:
        return QStringLiteral("z. B. 90");
    case ConditionKind::LargerThanMB:
        return QStringLiteral("z. B. 500");
    }
    return {};
}

QString rawValue(RuleAction action)
{
    return toJson(action).toString();
}

QString title(RuleAction action)
{
    switch (action) {
    case RuleAction::Move:
        return QStringLiteral("Verschieben nach");
    case RuleAction::Copy:
        return QStringLiteral("Kopieren nach");
    case RuleAction::Rename:
        return QStringLiteral("Umbenennen");
    case RuleAction::Trash:
        return QStringLiteral("In den Papierkorb");
    case RuleAction::AiSort:
        return QStringLiteral("Mit KI einsortieren in");
    }
    return {};
}

} // namespace brellin

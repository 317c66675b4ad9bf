#include "Agent/Screens/AgentArea.h"

namespace brellin {

QString title(AgentArea area)
{
    switch (area) {
    case AgentArea::Cleanup:
        return QStringLiteral("Aufräumen");
    case AgentArea::Photos:
        return QStringLiteral("Fotos & Videos");
    case AgentArea::Receipts:
        return QStringLiteral("Belege aus Mail");
    case AgentArea::Projects:
        return QStringLiteral("Projekte");
    case AgentArea::History:
        return QStringLiteral("Verlauf");
    }
    return {};
}

QString title(AgentSheet sheet)
{
    switch (sheet) {
    case AgentSheet::CleanupRules:
        return QStringLiteral("Regeln und Einstellungen");
    case AgentSheet::ReceiptRules:
        return QStringLiteral("Belege – Regeln und Ablage");
    case AgentSheet::Settings:
        return QStringLiteral("Einstellungen");
    case AgentSheet::Recipes:
        return QStringLiteral("Rezepte");
    }
    return {};
}

QString subtitle(AgentSheet sheet)
{
    switch (sheet) {
    case AgentSheet::CleanupRules:
        return QStringLiteral("Was der Agent wohin sortiert – von oben nach unten, die erste passende gewinnt.");
    case AgentSheet::ReceiptRules:
        return QStringLiteral("Welche Mails als Beleg gelten, wo sie landen und welche Postfächer durchsucht werden.");
    case AgentSheet::Settings:
        return QStringLiteral("Zeitplan, Doppelte, KI und Updates.");
    case AgentSheet::Recipes:
        return QStringLiteral("aus Fotos und Screenshots");
    }
    return {};
}

} // namespace brellin

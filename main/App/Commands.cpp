#include "App/Command.h"

namespace brellin {

ExitCode CommandContext::refuse(const QString &message) const
{
    terminal.message(message);
    return ExitCode::NotPossible;
}

const std::vector<Command> &commands()
{
    static const std::vector<Command> table{
        {QStringLiteral("pruefen"),
         QStringLiteral("[--ausfuehren]"),
         QStringLiteral("Ordner nach den Regeln prüfen und Vorschläge machen"),
         {{QStringLiteral("ausfuehren"), {}, QStringLiteral("die angehakten Vorschläge ausführen")},
          {QStringLiteral("alle"),
           {},
           QStringLiteral("auch die Vorschläge ausführen, die nicht von selbst angehakt sind")},
          {QStringLiteral("ohne"), QStringLiteral("MUSTER"),
           QStringLiteral("Dateien auslassen, deren Name oder Pfad passt (z. B. „*.zip“; mehrfach möglich)")}},
         runCheckCommand},
        {QStringLiteral("regeln"),
         QStringLiteral("[export [DATEI] | import DATEI | beispiele]"),
         QStringLiteral("Regeln zeigen, sichern, ersetzen oder um die Beispiele ergänzen"),
         {},
         runRulesCommand},
        {QStringLiteral("verlauf"), {}, QStringLiteral("zeigen, was wann aufgeräumt wurde"), {}, runHistoryCommand},
        {QStringLiteral("rueckgaengig"),
         QStringLiteral("[ID]"),
         QStringLiteral("eine Aufräum-Aktion zurücknehmen (ohne ID die neueste)"),
         {},
         runUndoCommand},
    };
    return table;
}

} // namespace brellin

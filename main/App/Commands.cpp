#include "App/Command.h"
#include "App/ProposingCommand.h"

namespace brellin {

ExitCode CommandContext::refuse(const QString &message) const
{
    terminal.message(message);
    return ExitCode::NotPossible;
}

const std::vector<Command> &commands()
{
    static const std::vector<Command> table{
        {QStringLiteral("pruefen"), QStringLiteral("[--doppelte] [--ausfuehren]"),
         QStringLiteral("Ordner nach den Regeln prüfen und Vorschläge machen"),
         ProposingCommand::options(
             {{QStringLiteral("doppelte"), {}, QStringLiteral("auch nach doppelten Dateien suchen")}}),
         runCheckCommand},
        {QStringLiteral("doppelte"), QStringLiteral("ORDNER… [--ausfuehren]"),
         QStringLiteral("doppelte Dateien in diesen Ordnern finden"), ProposingCommand::options(),
         runDuplicatesCommand},
        {QStringLiteral("analysieren"), QStringLiteral("ORDNER [--profil-bestaetigen] [--ausfuehren]"),
         QStringLiteral("einen Ordner prüfen: Doppeltes, Altes und lose Dateien"),
         ProposingCommand::options({{QStringLiteral("profil-bestaetigen"),
                                     {},
                                     QStringLiteral("das erkannte Schutzprofil eines Projekts übernehmen")}}),
         runAnalyzeCommand},
        {QStringLiteral("profile"),
         QStringLiteral("[export [DATEI] | import DATEI]"),
         QStringLiteral("Schutzprofile zeigen, sichern oder ersetzen"),
         {},
         runProfilesCommand},
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
        {QStringLiteral("bericht"),
         QStringLiteral("[ORDNER]"),
         QStringLiteral("einen Prüfbericht der Vorschläge schreiben und die Anfrage dazu ausgeben"),
         {},
         runReportCommand},
        {QStringLiteral("ki"),
         QStringLiteral("[--verwenden ADRESSE]"),
         QStringLiteral("zeigen, ob ein Sprachmodell auf diesem Rechner bereit ist"),
         {{QStringLiteral("verwenden"), QStringLiteral("ADRESSE"),
           QStringLiteral("diesen Modell-Server benutzen („aus“: keinen)")}},
         runModelCommand},
    };
    return table;
}

} // namespace brellin

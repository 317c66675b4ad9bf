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
        {QStringLiteral("groesse"),
         QStringLiteral("ORDNER…"),
         QStringLiteral("zeigen, wie viel in Ordnern liegt"),
         {},
         runSizeCommand},
        {QStringLiteral("markieren"),
         QStringLiteral("NAME DATEI… [--entfernen]"),
         QStringLiteral("eine Markierung („Rot“) setzen oder entfernen"),
         {{QStringLiteral("entfernen"), {}, QStringLiteral("die Markierung entfernen, statt sie zu setzen")}},
         runTagCommand},
        {QStringLiteral("markierungen"),
         QStringLiteral("DATEI…"),
         QStringLiteral("Markierungen zeigen"),
         {},
         runTagsCommand},
        {QStringLiteral("markiert"),
         QStringLiteral("NAME [--in ORDNER]"),
         QStringLiteral("finden, was eine Markierung trägt"),
         {{QStringLiteral("in"), QStringLiteral("ORDNER"),
           QStringLiteral("nur in diesem Ordner suchen (sonst im Benutzerordner)")}},
         runTaggedCommand},
        {QStringLiteral("schnellzugriff"),
         QStringLiteral("[anheften ORDNER | loesen ORDNER]"),
         QStringLiteral("den Schnellzugriff zeigen oder ändern"),
         {},
         runQuickAccessCommand},
        {QStringLiteral("liste"),
         QStringLiteral("ORDNER [--alle] [--sortiert name|groesse|datum|art] [--absteigend]"),
         QStringLiteral("zeigen, was in einem Ordner liegt"),
         {{QStringLiteral("alle"), {}, QStringLiteral("auch Verstecktes zeigen")},
          {QStringLiteral("sortiert"), QStringLiteral("SPALTE"),
           QStringLiteral("nach name, groesse, datum oder art sortieren")},
          {QStringLiteral("absteigend"), {}, QStringLiteral("umgekehrt sortieren")}},
         runListFolderCommand},
        {QStringLiteral("suchen"),
         QStringLiteral("ORDNER TEXT [--alle]"),
         QStringLiteral("unterhalb eines Ordners nach Namen suchen"),
         {{QStringLiteral("alle"), {}, QStringLiteral("auch Verstecktes durchsuchen")}},
         runSearchFolderCommand},
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

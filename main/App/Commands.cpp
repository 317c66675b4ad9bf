#include "App/Command.h"
#include "App/ProposingCommand.h"
#include "Features/FolderColors.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

/// Commands of the agent: proposals, rules, history.
std::vector<Command> agentCommands()
{
    return {
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
        {QStringLiteral("verlauf"),
         QStringLiteral("[--alle | suchen NAME]"),
         QStringLiteral("zeigen, was wann aufgeräumt wurde, oder wohin eine Datei ging"),
         {{QStringLiteral("alle"), {}, QStringLiteral("auch zeigen, was du selbst mit Dateien getan hast")}},
         runHistoryCommand},
        {QStringLiteral("rueckgaengig"),
         QStringLiteral("[ID]"),
         QStringLiteral(
             "eine Aufräum-Aktion zurücknehmen (ohne ID die neueste), oder noch einmal, was davon übrig blieb"),
         {},
         runUndoCommand},
        {QStringLiteral("bericht"),
         QStringLiteral("[ORDNER]"),
         QStringLiteral("einen Prüfbericht der Vorschläge schreiben und die Anfrage dazu ausgeben"),
         {},
         runReportCommand},
    };
}

/// Commands for the user's own file operations.
std::vector<Command> fileCommands()
{
    return {
        {QStringLiteral("groesse"),
         QStringLiteral("ORDNER…"),
         QStringLiteral("zeigen, wie viel in Ordnern liegt"),
         {},
         runSizeCommand},
        {QStringLiteral("umbenennen"),
         QStringLiteral("--modus nummer|ersetzen|ergaenzen|datum … DATEI… [--probelauf]"),
         QStringLiteral("mehrere Dateien auf einmal umbenennen"),
         {{QStringLiteral("modus"), QStringLiteral("MODUS"),
           QStringLiteral("nummer (Name + Nummer), ersetzen, ergaenzen oder datum (Datum davor)")},
          {QStringLiteral("basis"), QStringLiteral("NAME"), QStringLiteral("nummer: der Name vor der Nummer")},
          {QStringLiteral("start"), QStringLiteral("ZAHL"), QStringLiteral("nummer: die erste Nummer (sonst 1)")},
          {QStringLiteral("stellen"), QStringLiteral("ZAHL"),
           QStringLiteral("nummer: mindestens so viele Stellen (sonst 2)")},
          {QStringLiteral("trenner"), QStringLiteral("TEXT"),
           QStringLiteral("nummer: zwischen Name und Nummer (sonst „ – “)")},
          {QStringLiteral("suchen"), QStringLiteral("TEXT"), QStringLiteral("ersetzen: was ersetzt wird")},
          {QStringLiteral("ersetzen"), QStringLiteral("TEXT"), QStringLiteral("ersetzen: wodurch")},
          {QStringLiteral("vorn"), QStringLiteral("TEXT"), QStringLiteral("ergaenzen: vor den Namen")},
          {QStringLiteral("hinten"), QStringLiteral("TEXT"), QStringLiteral("ergaenzen: vor die Endung")},
          {QStringLiteral("probelauf"), {}, QStringLiteral("nur zeigen, was umbenannt würde")}},
         runRenameCommand},
        {QStringLiteral("papierkorb"),
         QStringLiteral("DATEI…"),
         QStringLiteral("in den Papierkorb legen"),
         {},
         runTrashCommand},
        {QStringLiteral("zip"),
         QStringLiteral("DATEI…"),
         QStringLiteral("in ein ZIP-Archiv packen, das daneben liegt"),
         {},
         runZipCommand},
        {QStringLiteral("verknuepfung"),
         QStringLiteral("DATEI… [--in ORDNER]"),
         QStringLiteral("Verknüpfungen anlegen"),
         {{QStringLiteral("in"), QStringLiteral("ORDNER"), QStringLiteral("dort und nicht daneben")}},
         runAliasCommand},
        {QStringLiteral("kopieren"),
         QStringLiteral("QUELLE… ZIEL [--konflikt ersetzen|beide|ueberspringen|zusammenfuehren|abbrechen]"),
         QStringLiteral("in einen Ordner kopieren"),
         {{QStringLiteral("konflikt"), QStringLiteral("WAHL"),
           QStringLiteral(
               "was mit Einträgen geschieht, deren Name im Ziel vergeben ist; zusammenfuehren gilt für Ordner und "
               "darf neben einer anderen Wahl stehen")}},
         runCopyCommand},
        {QStringLiteral("verschieben"),
         QStringLiteral("QUELLE… ZIEL [--konflikt ersetzen|beide|ueberspringen|zusammenfuehren|abbrechen]"),
         QStringLiteral("in einen Ordner verschieben"),
         {{QStringLiteral("konflikt"), QStringLiteral("WAHL"),
           QStringLiteral(
               "was mit Einträgen geschieht, deren Name im Ziel vergeben ist; zusammenfuehren gilt für Ordner und "
               "darf neben einer anderen Wahl stehen")}},
         runMoveCommand},
    };
}

/// Commands for colour tags.
std::vector<Command> tagCommands()
{
    return {
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
    };
}

/// Commands for stored data, folder sizes and leftovers.
std::vector<Command> furtherCommands()
{
    return {
        {QStringLiteral("schnellzugriff"),
         QStringLiteral("[anheften ORDNER | loesen ORDNER]"),
         QStringLiteral("den Schnellzugriff zeigen oder ändern"),
         {},
         runQuickAccessCommand},
        {QStringLiteral("daten"),
         QStringLiteral("[wiederherstellen LISTE | neu LISTE]"),
         QStringLiteral("zeigen, ob das Gespeicherte lesbar ist, und Beschädigtes ersetzen"),
         {},
         runDataCommand},
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
        {QStringLiteral("reste"),
         QStringLiteral("[ORDNER…] [--aufraeumen]"),
         QStringLiteral("zeigen, was abgebrochene Vorgänge hinterlassen haben"),
         {{QStringLiteral("aufraeumen"),
           {},
           QStringLiteral("unfertige Kopien entfernen, alte Namen wiederherstellen, Aufräum-Aktionen übernehmen")}},
         runRemnantsCommand},
        {QStringLiteral("ki"),
         QStringLiteral("[--verwenden ADRESSE]"),
         QStringLiteral("zeigen, ob ein Sprachmodell auf diesem Rechner bereit ist"),
         {{QStringLiteral("verwenden"), QStringLiteral("ADRESSE"),
           QStringLiteral("diesen Modell-Server benutzen („aus“: keinen)")}},
         runModelCommand},
    };
}

} // namespace

void CommandContext::follow(const std::vector<EntryMove> &moves) const
{
    if (!moves.empty())
        FolderColors(services.settings()).moved(moves);
}

ExitCode CommandContext::refuse(const QString &message) const
{
    terminal.message(message);
    return ExitCode::NotPossible;
}

const std::vector<Command> &commands()
{
    static const std::vector<Command> table = [] {
        std::vector<Command> all;
        for (std::vector<Command> group : {agentCommands(), fileCommands(), tagCommands(), furtherCommands()})
            std::ranges::move(group, std::back_inserter(all));
        return all;
    }();
    return table;
}

} // namespace brellin

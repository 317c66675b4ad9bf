#include "Agent/Screens/GuideTexts.h"

#include "Base/Edition.h"

#include <array>

namespace brellin {

namespace {

struct Section {
    const char16_t *symbol;
    const char16_t *title;
    const char16_t *mac;
    const char16_t *linux; ///< null: same text as on the other system
};

constexpr auto sections = std::to_array<Section>({
    {u"wand.and.sparkles", u"Was der Agent ist",
     u"Der Aufräum-Agent hält deine Ordner, Fotos und Belege in Ordnung. Er arbeitet nach deinen Regeln, schlägt vor "
     u"statt "
     u"einfach zu machen, und alles Verschobene lässt sich rückgängig machen. Die KI (Apple Intelligence) läuft nur "
     u"auf "
     u"diesem Mac – nichts geht ins Internet.",
     u"Der Aufräum-Agent hält deine Ordner, Fotos und Belege in Ordnung. Er arbeitet nach deinen Regeln, schlägt vor "
     u"statt "
     u"einfach zu machen, und alles Verschobene lässt sich rückgängig machen. Die KI läuft nur auf diesem Rechner – "
     u"nichts "
     u"geht ins Internet."},
    {u"bell", u"Öffnen und die rote Zahl",
     u"Öffnen: Zauberstab-Symbol oben in der Leiste. Die rote Zahl am Symbol zeigt, was seit dem letzten Öffnen neu "
     u"ist "
     u"(automatisch Erledigtes und neue Vorschläge). Beim Öffnen verschwindet sie.",
     nullptr},
    {u"list-checks", u"Vorschläge",
     u"Nichts passiert ohne deinen Haken. „Regeln prüfen“ sammelt Vorschläge, geordnet nach Verschieben, Umbenennen, "
     u"Papierkorb und Kopieren. Unter jedem Namen steht, woher die Datei kommt und wohin sie soll, daneben der Grund. "
     u"Das "
     u"Auge zeigt mehr, das Kreuz nimmt den Vorschlag aus der Liste. „Ausgewählte ausführen“ erledigt, was einen Haken "
     u"hat; „Abgewählte verwerfen“ räumt den Rest aus der Liste – mit den Dateien geschieht dabei nichts. Was dir der "
     u"Agent nie wieder zeigen soll, blendest du mit „Nicht mehr vorschlagen“ aus.\n\nTasten: Leertaste setzt den "
     u"Haken, "
     u"Pfeile wandern, Eingabetaste zeigt mehr, Entf verwirft.",
     nullptr},
    {u"triangle-alert", u"„Prüfung empfohlen“",
     u"Vorschläge mit ⚠ sind nie vorausgewählt. Sie betreffen zum Beispiel Ordner mit Skripten oder Sicherungen. Sieh "
     u"dort "
     u"selbst nach, bevor du den Haken setzt.",
     nullptr},
    {u"sliders-horizontal", u"Regeln",
     u"Eine Regel sagt, in welchem Ordner der Agent sucht, welche Dateien er meint und was mit ihnen geschieht: "
     u"verschieben, kopieren, umbenennen, in den Papierkorb oder mit KI einsortieren. Regeln werden von oben nach "
     u"unten "
     u"geprüft. Jede Datei wird nur von einer Regel erfasst. Ohne Bedingung gilt die Regel für alle Dateien im Ordner. "
     u"Beim Bearbeiten zeigt der Agent rechts, was die Regel jetzt tun würde und warum sie eine Datei nicht nimmt.",
     nullptr},
    {u"text-cursor-input", u"Platzhalter",
     u"Im Zielordner und im neuen Namen setzt der Agent ein: {Jahr} {Monat} {Tag} {Datum} für den Tag, an dem die "
     u"Datei "
     u"entstanden ist, {Kategorie} für ihre Art. In neuen Namen auch {Name}: der alte Name, bereinigt um „Kopie“, "
     u"Zähler wie „(2)“ und Unterstriche. Die Endung bleibt erhalten.",
     nullptr},
    {u"copy", u"Doppelte",
     u"Verglichen wird der Inhalt, nicht der Name. Die älteste Datei bleibt immer erhalten. Willst du die andere "
     u"behalten, "
     u"öffne den Vorschlag und wähle „Stattdessen diese behalten“. Welche Ordner nach Doppelten durchsucht werden, "
     u"steht "
     u"in den Einstellungen.",
     nullptr},
    {u"folder-search", u"Ordner analysieren",
     u"Einen bestimmten Ordner prüfen: Doppelte finden und lose Dateien sinnvoll einsortieren. Dazu schlägt der Agent "
     u"vor, "
     u"was weg kann – alte Sicherungen, nie geöffnete Ordner und große Videos. Dateien, die ein Skript benutzt, lässt "
     u"er "
     u"liegen.",
     nullptr},
    {u"folder.badge.gearshape", u"Projekte & Schutz",
     u"Wählst du mit „Ordner analysieren …“ einen Software-Projektordner, erkennt der Agent das, schlägt vor, was "
     u"geschützt "
     u"werden muss, und fragt dich. Ohne Schutzprofil wird ein Software-Projekt nicht aufgeräumt. Geschützte Einträge "
     u"werden nie verschoben, umbenannt oder gelöscht. Jeden anderen Ordner schützt du mit „Ordner schützen …“.",
     nullptr},
    {u"sparkles", u"Die KI",
     u"Regeln mit „Mit KI einsortieren in“ lassen Apple Intelligence einen passenden Unterordner wählen, am liebsten "
     u"einen "
     u"vorhandenen. Das geschieht auf diesem Mac, ohne Internet. Ohne KI funktionieren Regeln und Doppelte trotzdem.",
     u"Regeln mit „Mit KI einsortieren in“ lassen ein Sprachmodell einen passenden Unterordner wählen, am liebsten "
     u"einen "
     u"vorhandenen. Das Modell läuft auf diesem Rechner, in einem Modell-Server, den du selbst startest und in den "
     u"Einstellungen bestätigst; andere Rechner werden nie gefragt. Ohne KI funktionieren Regeln und Doppelte "
     u"trotzdem."},
    {u"clipboard-check", u"Prüfung an Claude übergeben",
     u"Bist du unsicher, schreibt der Agent einen Prüfbericht nach Dokumente › Brellin-Prüfungen, legt eine Anfrage in "
     u"die "
     u"Zwischenablage und öffnet Claude, wenn es installiert ist. Gesendet wird nichts: Du fügst die Anfrage mit ⌘V "
     u"selbst "
     u"ein.",
     u"Bist du unsicher, schreibt der Agent einen Prüfbericht nach Dokumente › Brellin-Prüfungen, legt eine Anfrage in "
     u"die "
     u"Zwischenablage und öffnet Claude, wenn es installiert ist. Gesendet wird nichts: Du fügst die Anfrage mit "
     u"Strg+V "
     u"selbst ein."},
    {u"clock", u"Zeitplan",
     u"Der Agent prüft von selbst, so oft du es einstellst – von stündlich bis wöchentlich oder nur von Hand. Läuft, "
     u"solange "
     u"%1 geöffnet ist. Regeln ohne „automatisch“ erscheinen als Vorschlag zum Bestätigen.",
     nullptr},
    {u"clock.arrow.circlepath", u"Verlauf & Rückgängig",
     u"Jede Aufräum-Aktion steht im Verlauf, mit allen Schritten. „Rückgängig“ legt alles zurück, was noch da ist; was "
     u"sich "
     u"nicht zurücklegen ließ, wird mit Namen genannt. Auch ein Lauf, den ein Absturz unterbrochen hat, steht hier. "
     u"Der "
     u"Verlauf behält die letzten 30 Aktionen.",
     nullptr},
    {u"shield-check", u"Was nie passiert",
     u"• Es wird nie endgültig gelöscht – nur in den Papierkorb.\n• Jede Aktion steht im Verlauf und lässt sich "
     u"rückgängig "
     u"machen.\n• System, Programme und Library werden nie angefasst.",
     u"• Es wird nie endgültig gelöscht – nur in den Papierkorb.\n• Jede Aktion steht im Verlauf und lässt sich "
     u"rückgängig "
     u"machen.\n• System, Programme und die versteckten Ordner deines Benutzerordners werden nie angefasst."},
    {u"settings", u"Einstellungen & Ausschalten",
     u"Unter „Einstellungen“ wählst du, wann der Agent prüft, wo er nach Doppelten sucht und ob die KI hilft. "
     u"Ausschalten: "
     u"„Automatisch prüfen“ auf „Nur von Hand“ stellen – dann tut der Agent nichts mehr von selbst. Eine einzelne "
     u"Regel "
     u"schaltest du mit ihrem Haken in der Regelliste aus.",
     nullptr},
});

} // namespace

std::vector<GuideSection> guideSections(TextSystem system)
{
    std::vector<GuideSection> made;
    for (const Section &one : sections) {
        const bool linux = system == TextSystem::Linux && one.linux;
        made.push_back(
            {QString::fromUtf16(one.symbol), QString::fromUtf16(one.title),
             QString::fromUtf16(linux ? one.linux : one.mac).replace(QStringLiteral("%1"), Edition::name())});
    }
    return made;
}

} // namespace brellin

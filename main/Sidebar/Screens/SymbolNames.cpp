#include "Sidebar/Screens/SymbolNames.h"

#include <algorithm>

namespace brellin {

namespace {

struct Name {
    QStringView symbol;
    QStringView german;
};

constexpr Name names[] = {
    {u"wand.and.sparkles", u"Zauberstab"},
    {u"photo.on.rectangle.angled", u"Fotos"},
    {u"doc.text.magnifyingglass", u"Durchsuchtes Dokument"},
    {u"folder.badge.gearshape", u"Ordner mit Zahnrad"},
    {u"clock.arrow.circlepath", u"Verlauf"},
    {u"book", u"Buch"},
    {u"person.crop.square", u"Person"},
    {u"menubar.dock.rectangle", u"Bildschirm"},
    {u"arrow.down.circle", u"Pfeil nach unten"},
    {u"square.grid.3x3", u"Kacheln"},
    {u"cloud", u"Wolke"},
    {u"folder", u"Ordner"},
    {u"house", u"Haus"},
    {u"star", u"Stern"},
    {u"heart", u"Herz"},
    {u"briefcase", u"Aktentasche"},
    {u"graduationcap", u"Doktorhut"},
    {u"gamecontroller", u"Spiele"},
    {u"chevron.left.forwardslash.chevron.right", u"Quelltext"},
    {u"airplane", u"Flugzeug"},
    {u"map", u"Landkarte"},
    {u"person.2", u"Personen"},
    {u"envelope", u"Brief"},
    {u"film", u"Film"},
    {u"music.note", u"Musik"},
    {u"photo", u"Bild"},
    {u"doc.text", u"Dokument"},
    {u"archivebox", u"Archiv"},
    {u"externaldrive", u"Laufwerk"},
    {u"network", u"Server"},
    {u"trash", u"Papierkorb"},
    {u"tag", u"Etikett"},
    {u"gearshape", u"Zahnrad"},
    {u"magnifyingglass", u"Lupe"},
    {u"camera", u"Kamera"},
    {u"creditcard", u"Geld"},
    {u"hammer", u"Hammer"},
    {u"bookmark", u"Lesezeichen"},
};

} // namespace

QString germanSymbolName(const QString &symbol)
{
    const auto found = std::ranges::find(names, QStringView(symbol), &Name::symbol);
    return found == std::end(names) ? symbol : found->german.toString();
}

} // namespace brellin

#include "ContentView/BrowserTexts.h"

#include "Base/Edition.h"
#include "Base/German.h"

namespace brellin {

QString statusLine(std::size_t count, const QString &selected, std::optional<std::int64_t> freeSpace)
{
    const QString separator = QStringLiteral("   |   ");
    QString text = counted(static_cast<qint64>(count), QStringLiteral("Element"), QStringLiteral("Elemente"));
    if (!selected.isEmpty())
        text += separator + selected;
    if (freeSpace)
        text += separator + sizeText(*freeSpace) + QStringLiteral(" frei");
    return text;
}

QString unreadableFolderText(const QString &error, BrowserTextSystem system)
{
    QString text = QStringLiteral("Ordner kann nicht geöffnet werden: ") + error;
    if (system == BrowserTextSystem::Mac)
        text += u"\n\nTipp: Erlaube den Zugriff unter Systemeinstellungen › Datenschutz & Sicherheit › Dateien und "
                u"Ordner."_qs;
    return text;
}

QString unreadableTrashText(const QString &error, BrowserTextSystem system)
{
    const QString text = QStringLiteral("Der Papierkorb kann nicht gelesen werden.\n\n");
    if (system == BrowserTextSystem::Mac)
        return text + (u"macOS schützt ihn: Erlaube „%1“ unter Systemeinstellungen › Datenschutz & Sicherheit › "
                       u"Festplattenvollzugriff und starte %1 neu."_qs)
                          .arg(Edition::name());
    return text + error;
}

QString notFoundText(const Location &folder)
{
    return QStringLiteral("„%1“ wurde nicht gefunden.").arg(shown(folder));
}

QString notAnsweringText(const Location &location)
{
    return QStringLiteral("Das Netzlaufwerk antwortet nicht: „%1“ ist gerade nicht erreichbar.").arg(shown(location));
}

} // namespace brellin

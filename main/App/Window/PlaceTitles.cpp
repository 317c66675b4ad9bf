#include "App/Window/PlaceTitles.h"

#include "Look/Symbols.h"

namespace brellin {

namespace {

QString symbolOf(Place::Kind kind)
{
    using enum Place::Kind;
    switch (kind) {
    case Folder:
        return QStringLiteral("folder");
    case Search:
        return QStringLiteral("search");
    case Tag:
        return QStringLiteral("tag");
    case Trash:
        return QStringLiteral("trash-2");
    case Photos:
        return QStringLiteral("image");
    case Network:
        return QStringLiteral("network");
    case Agent:
        return QStringLiteral("wand-sparkles");
    case Device:
        return QStringLiteral("camera");
    case Storage:
        return QStringLiteral("chart-pie");
    case History:
        return QStringLiteral("history");
    }
    return {};
}

} // namespace

QString titleOf(const Place &place, const KnownFolders &folders)
{
    using enum Place::Kind;
    switch (place.kind) {
    case Folder:
        return folders.title(place.location);
    case Search:
        return QStringLiteral("Suche „%1“ in %2").arg(place.name, folders.title(place.location));
    case Tag:
        return QStringLiteral("Markierung ") + place.name;
    case Trash:
        return QStringLiteral("Papierkorb");
    case Photos:
        return QStringLiteral("Fotos-Mediathek");
    case Network:
        return QStringLiteral("Netzwerk");
    case Agent:
        return QStringLiteral("Aufräum-Agent");
    case Device:
        return place.name;
    case Storage:
        return QStringLiteral("Speicherplatz: ") + folders.title(place.location);
    case History:
        return QStringLiteral("Verlauf");
    }
    return {};
}

QIcon iconOf(const Place &place)
{
    return Symbols::icon(symbolOf(place.kind));
}

} // namespace brellin

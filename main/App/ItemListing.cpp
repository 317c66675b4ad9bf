#include "App/ItemListing.h"

#include "App/Terminal.h"
#include "Base/German.h"

#include <QJsonObject>

namespace brellin {

namespace {

QJsonObject jsonOf(const FileItem &item)
{
    return {{QStringLiteral("url"), textOf(item.location())},
            {QStringLiteral("name"), item.name()},
            {QStringLiteral("isFolder"), item.isFolder},
            {QStringLiteral("isHidden"), item.isHidden},
            {QStringLiteral("size"), static_cast<qint64>(item.size)},
            {QStringLiteral("modified"), isoText(item.modified)},
            {QStringLiteral("kind"), item.kind},
            {QStringLiteral("tags"), QJsonArray::fromStringList(item.tags)}};
}

QString placeOf(const FileItem &item, const Location &folder)
{
    const std::string path = item.path();
    const std::size_t above = folder == "/" ? 1 : folder.native().size() + 1;
    QString place = printable(shown(std::string_view(path).substr(above)));
    if (item.isFolder)
        place += u'/';
    if (item.link == LinkState::Broken)
        place += QStringLiteral(" (Verknüpfung ins Leere)");
    return place;
}

} // namespace

QJsonArray jsonOf(const DisplayedItems &items)
{
    QJsonArray all;
    for (std::size_t row = 0; row < items.size(); ++row)
        all.append(jsonOf(items[row]));
    return all;
}

std::vector<QStringList> rowsOf(const DisplayedItems &items, const Location &folder)
{
    std::vector<QStringList> rows;
    rows.reserve(items.size());
    for (std::size_t row = 0; row < items.size(); ++row) {
        const FileItem &item = items[row];
        rows.push_back({item.sizeText(), longDateTime(item.modified), item.kind,
                        printable(item.tags.join(QStringLiteral(", "))), placeOf(item, folder)});
    }
    return rows;
}

} // namespace brellin

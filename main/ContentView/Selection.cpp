#include "ContentView/Selection.h"

namespace brellin {

namespace {

QByteArray keyOf(const std::string &path)
{
    return {path.data(), static_cast<qsizetype>(path.size())};
}

/// The item's path in a reused buffer, valid until the next call: called for a hundred thousand items in a row.
QByteArrayView lookedUp(const FileItem &item)
{
    thread_local std::string path;
    path.clear();
    if (item.folder && *item.folder != "/")
        path.append(*item.folder);
    path.append(1, '/').append(item.nameBytes);
    return {path.data(), static_cast<qsizetype>(path.size())};
}

} // namespace

Selection::Selection(const std::vector<Location> &locations)
{
    for (const Location &location : locations)
        insert(location);
}

bool Selection::contains(const FileItem &item) const
{
    if (m_paths.isEmpty())
        return false;
    // Fast path: each arrow key looks for one entry in a long list.
    if (m_paths.size() == 1) {
        const QByteArray &only = *m_paths.constBegin();
        return item.isAt({only.constData(), static_cast<std::size_t>(only.size())});
    }
    const QByteArrayView path = lookedUp(item);
    return m_paths.contains(QByteArray::fromRawData(path.data(), path.size()));
}

bool Selection::contains(const Location &location) const
{
    return m_paths.contains(keyOf(location.native()));
}

void Selection::insert(const FileItem &item)
{
    m_paths.insert(lookedUp(item).toByteArray());
}

void Selection::insert(const Location &location)
{
    m_paths.insert(keyOf(location.native()));
}

void Selection::remove(const Location &location)
{
    m_paths.remove(keyOf(location.native()));
}

SelectionSummary summaryOf(const FileItems &items, const Selection &selection)
{
    SelectionSummary summary;
    for (std::uint32_t place = 0; place < items.size() && summary.count() < selection.size(); ++place) {
        const FileItem &item = items[place];
        if (!selection.contains(item))
            continue;
        if (!summary.first)
            summary.first = place;
        if (item.isFolder) {
            summary.folders.push_back(place);
        } else {
            ++summary.files;
            summary.fileBytes += item.size;
        }
    }
    return summary;
}

} // namespace brellin

#include "ContentView/Selection.h"

#include <functional>
#include <utility>

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

Selection Selection::ofAll(const DisplayedItems &rows)
{
    Selection all;
    if (rows.size() == rows.items().size()) {
        all.m_list = rows.items();
        return all;
    }
    all.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        all.insert(rows[row]);
    return all;
}

/// Compares addresses: true only for an element of this list, not for the same entry in a newer one.
bool Selection::isInList(const FileItem &item) const
{
    const std::less<> before; // also orders unrelated pointers
    const FileItem *const first = &m_list[0];
    return !before(&item, first) && before(&item, first + m_list.size());
}

/// The selection as paths; drops the list.
QSet<QByteArray> &Selection::paths() const
{
    if (m_list.empty())
        return m_paths;
    const FileItems list = std::exchange(m_list, {});
    m_paths.reserve(static_cast<qsizetype>(list.size()));
    for (const FileItem &item : list)
        m_paths.insert(lookedUp(item).toByteArray());
    return m_paths;
}

bool Selection::operator==(const Selection &other) const
{
    if (size() != other.size() || empty())
        return size() == other.size();
    return (!m_list.empty() && m_list == other.m_list) || paths() == other.paths();
}

bool Selection::contains(const FileItem &item) const
{
    if (!m_list.empty() && isInList(item))
        return true;
    if (paths().isEmpty())
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
    return paths().contains(keyOf(location.native()));
}

void Selection::insert(const FileItem &item)
{
    paths().insert(lookedUp(item).toByteArray());
}

void Selection::insert(const Location &location)
{
    paths().insert(keyOf(location.native()));
}

void Selection::remove(const Location &location)
{
    paths().remove(keyOf(location.native()));
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

#include "ContentView/Selection.h"

namespace brellin {

namespace {

QByteArray keyOf(const std::string &path)
{
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
    return !m_paths.isEmpty() && m_paths.contains(keyOf(item.path()));
}

bool Selection::contains(const Location &location) const
{
    return m_paths.contains(keyOf(location.native()));
}

void Selection::insert(const FileItem &item)
{
    m_paths.insert(keyOf(item.path()));
}

void Selection::insert(const Location &location)
{
    m_paths.insert(keyOf(location.native()));
}

void Selection::remove(const Location &location)
{
    m_paths.remove(keyOf(location.native()));
}

} // namespace brellin

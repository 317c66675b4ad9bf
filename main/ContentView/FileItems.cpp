#include "ContentView/FileItems.h"

#include "Base/PoolWork.h"
#include "ContentView/NameOrder.h"

#include <algorithm>

namespace brellin {

namespace {

/// From this many entries on, freeing takes long enough to be noticed.
constexpr std::size_t manyItems = 20'000;

} // namespace

FileItems::FileItems(std::vector<FileItem> items)
{
    std::vector<std::uint32_t> ranks = nameRanks(items);
    m_shared = {new Shared{std::move(items), std::move(ranks)}, &FileItems::free};
}

/// Frees large lists on a worker, since the last reference is usually released on the main thread.
void FileItems::free(const Shared *list)
{
    QThreadPool *const pool = list->items.size() < manyItems ? nullptr : QThreadPool::globalInstance();
    if (pool)
        PoolWork::start(*pool, [list] { delete list; }, {});
    else
        delete list;
}

bool FileItems::sameContent(const FileItems &other) const
{
    return m_shared == other.m_shared || std::ranges::equal(*this, other);
}

const std::vector<FileItem> &FileItems::list() const
{
    static const std::vector<FileItem> none;
    return m_shared ? m_shared->items : none;
}

} // namespace brellin

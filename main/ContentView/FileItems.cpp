#include "ContentView/FileItems.h"

#include "ContentView/NameOrder.h"

#include <algorithm>

namespace brellin {

FileItems::FileItems(std::vector<FileItem> items)
{
    std::vector<std::uint32_t> ranks = nameRanks(items);
    m_shared = std::make_shared<const Shared>(Shared{std::move(items), std::move(ranks)});
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

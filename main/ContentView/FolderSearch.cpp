#include "ContentView/FolderSearch.h"

#include "ContentView/NameQuery.h"
#include "Disk/UnreadableFolders.h"

#include <algorithm>
#include <tuple>

namespace brellin {

bool SearchMatches::take(const WalkEntry &entry)
{
    return take(entry.location(), entry.hidden);
}

bool SearchMatches::take(const Location &entry)
{
    return take(entry, false);
}

bool SearchMatches::take(const Location &entry, bool hidden)
{
    if (m_count.fetch_add(1, std::memory_order_relaxed) >= mostSearchResults)
        return false;
    Result<FileItem> item = FileItem::at(entry);
    if (!item)
        return true; // deleted meanwhile
    item->isHidden = item->isHidden || hidden;
    const std::scoped_lock lock(m_mutex);
    m_items.push_back(*std::move(item));
    return true;
}

std::size_t SearchMatches::size() const
{
    const std::scoped_lock lock(m_mutex);
    return m_items.size();
}

FileItems SearchMatches::items() const
{
    std::vector<FileItem> items = [this] {
        const std::scoped_lock lock(m_mutex);
        return m_items;
    }();
    std::ranges::sort(items, {}, [](const FileItem &item) { return std::tie(*item.folder, item.nameBytes); });
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (*items[i].folder == *items[i - 1].folder)
            items[i].folder = items[i - 1].folder;
    }
    return FileItems(std::move(items));
}

FolderSearchResult searchFolder(const Location &folder, const QString &query, HiddenEntries hidden,
                                const JobControl *control)
{
    SearchMatches matches;
    return searchInto(matches, folder, query, hidden, control);
}

FolderSearchResult searchInto(SearchMatches &matches, const Location &folder, const QString &query,
                              HiddenEntries hidden, const JobControl *control)
{
    const NameQuery wanted(query);
    const WalkOptions options{.hidden = hidden == HiddenEntries::Shown};
    const auto visit = [&](const WalkEntry &entry, int) {
        return !wanted.matches(entry.name) || matches.take(entry) ? WalkStep::Continue : WalkStep::Stop;
    };
    FolderSearchResult result;
    const Result<WalkOutcome> outcome = walkParallel(folder, options, visit, control);
    if (outcome)
        addUnreadable(result.unreadable, outcome->unreadable);
    else
        result.error = outcome.error();
    result.items = matches.items();
    result.capped = matches.capped();
    return result;
}

} // namespace brellin

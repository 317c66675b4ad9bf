#include "ContentView/FolderSearch.h"

#include "ContentView/NameQuery.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <tuple>

namespace brellin {

namespace {

/// What several threads find, up to the limit.
class Matches {
public:
    /// False when there are enough.
    bool take(const WalkEntry &entry)
    {
        if (m_count.fetch_add(1, std::memory_order_relaxed) >= mostSearchResults)
            return false;
        Result<FileItem> item = FileItem::at(entry.location());
        if (!item)
            return true; // it went while the search passed by
        item->isHidden = item->isHidden || entry.hidden;
        const std::scoped_lock lock(m_mutex);
        m_items.push_back(*std::move(item));
        return true;
    }

    bool capped() const { return m_count.load() > mostSearchResults; }

    /// In an order that does not depend on the threads.
    FileItems items()
    {
        std::ranges::sort(m_items, {}, [](const FileItem &item) { return std::tie(*item.folder, item.nameBytes); });
        for (std::size_t i = 1; i < m_items.size(); ++i) {
            if (*m_items[i].folder == *m_items[i - 1].folder)
                m_items[i].folder = m_items[i - 1].folder;
        }
        return FileItems(std::move(m_items));
    }

private:
    std::atomic<std::size_t> m_count = 0;
    std::mutex m_mutex;
    std::vector<FileItem> m_items;
};

} // namespace

FolderSearchResult searchFolder(const Location &folder, const QString &query, HiddenEntries hidden,
                                const JobControl *control)
{
    const NameQuery wanted(query);
    const WalkOptions options{.hidden = hidden == HiddenEntries::Shown, .insidePackages = false};
    Matches matches;
    const auto visit = [&](const WalkEntry &entry, int) {
        return !wanted.matches(entry.name) || matches.take(entry) ? WalkStep::Continue : WalkStep::Stop;
    };
    FolderSearchResult result;
    if (const Result<WalkOutcome> outcome = walkParallel(folder, options, visit, control); !outcome)
        result.error = outcome.error();
    result.items = matches.items();
    result.capped = matches.capped();
    return result;
}

} // namespace brellin

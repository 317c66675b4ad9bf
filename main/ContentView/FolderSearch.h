#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "ContentView/Listing.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <vector>

namespace brellin {

struct WalkEntry;

/// What a search below a folder found.
struct FolderSearchResult {
    FileItems items;
    bool capped = false; ///< there may be more than the items that are listed
    std::optional<Failure> error;
};

/// So many matches end a search.
constexpr std::size_t mostSearchResults = 3000;

/// What a search has found so far: filled by its threads, up to the limit, and looked at by whoever waits for it.
class SearchMatches {
public:
    /// False when there are enough.
    bool take(const WalkEntry &entry);

    /// Whether there are more than are kept.
    bool capped() const { return m_count.load() > mostSearchResults; }
    /// In an order that does not depend on the threads.
    FileItems items() const;
    std::size_t size() const;

private:
    std::atomic<std::size_t> m_count = 0; ///< offered
    mutable std::mutex m_mutex;
    std::vector<FileItem> m_items;
};

/// Finds the entries below `folder` whose name contains `query`, without regard to case. Content of packages is never
/// searched; hidden entries, and what lies in hidden folders, only where they are shown. Blocking, with several threads.
FolderSearchResult searchFolder(const Location &folder, const QString &query, HiddenEntries hidden,
                                const JobControl *control = nullptr);
/// The same for somebody who looks at the matches meanwhile.
FolderSearchResult searchInto(SearchMatches &matches, const Location &folder, const QString &query,
                              HiddenEntries hidden, const JobControl *control);

} // namespace brellin

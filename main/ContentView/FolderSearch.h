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

/// Result of a search below a folder.
struct FolderSearchResult {
    FileItems items;
    bool capped = false;              ///< there are more matches than `items`
    std::vector<Location> unreadable; ///< folders that could not be searched, by path
    std::optional<Failure> error;
};

/// A search stops at this many matches.
constexpr std::size_t mostSearchResults = 3000;

/// Matches of a running search. Thread-safe: search threads add, another thread reads.
class SearchMatches {
public:
    /// Adds a match; false once the limit is reached.
    bool take(const WalkEntry &entry);
    bool take(const Location &entry);

    /// Whether more matches were found than are kept.
    bool capped() const { return m_count.load() > mostSearchResults; }
    /// Sorted by path, so that the order does not depend on threads.
    FileItems items() const;
    std::size_t size() const;

private:
    bool take(const Location &entry, bool hidden);

    std::atomic<std::size_t> m_count = 0; ///< matches found, including those over the limit
    mutable std::mutex m_mutex;
    std::vector<FileItem> m_items;
};

/// Finds entries below `folder` whose name contains `query`, ignoring case; hidden
/// entries and folders only if `hidden` says so. Blocking; uses several threads.
FolderSearchResult searchFolder(const Location &folder, const QString &query, HiddenEntries hidden,
                                const JobControl *control = nullptr);
/// As above, but adds to `matches`, so that another thread can show them meanwhile.
FolderSearchResult searchInto(SearchMatches &matches, const Location &folder, const QString &query,
                              HiddenEntries hidden, const JobControl *control);

} // namespace brellin

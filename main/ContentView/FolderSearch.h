#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "ContentView/Listing.h"
#include "Places/SearchTerms.h"

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace brellin {

struct WalkEntry;

/// What to search for below a folder.
struct FolderQuery {
    Location folder;
    QString text;
    HiddenEntries hidden = HiddenEntries::LeftOut;
    SearchTerms terms = {};
};

/// What a search could not examine, each list by path.
struct SearchGaps {
    std::vector<Location> folders; ///< not or not completely read
    std::vector<Location> files;   ///< matches that exist, but cannot be examined

    bool operator==(const SearchGaps &) const = default;
    bool empty() const { return folders.empty() && files.empty(); }
};

/// „2 Ordner nicht lesbar, 1 Datei nicht lesbar“
QString gapsText(const SearchGaps &gaps);
/// The paths as text.
QStringList gapsLines(const SearchGaps &gaps);

/// Result of a search below a folder.
struct FolderSearchResult {
    FileItems items;
    bool capped = false; ///< there are more matches than `items`
    SearchGaps gaps;
    std::optional<Failure> error;
};

/// A search stops at this many matches.
constexpr std::size_t mostSearchResults = 3000;

/// Matches of a running search. Thread-safe: search threads add, another thread reads.
class SearchMatches {
public:
    /// Takes only what meets the filters.
    explicit SearchMatches(const SearchFilters &filters = {});

    /// Adds a match; false once the limit is reached. Ignores an entry that is gone.
    bool take(const WalkEntry &entry);
    bool take(const Location &entry);

    /// Matches and gaps so far. Sorted by path, so that the order does not depend on threads.
    FolderSearchResult result() const;
    std::size_t size() const;

private:
    bool take(const Location &entry, bool hidden);

    const SearchFilters m_filters;
    const Instant m_now;
    std::atomic<std::size_t> m_count = 0; ///< matches found, including those over the limit
    mutable std::mutex m_mutex;
    std::vector<FileItem> m_items;
    SearchGaps m_gaps;
};

/// Searches and adds to the matches.
using FolderSearching = std::function<FolderSearchResult(SearchMatches &, const FolderQuery &, const JobControl *)>;

/// Finds entries below a folder whose name contains the text, ignoring case; hidden entries and folders only if `hidden`
/// says so. Adds to `matches`, so that another thread can show them meanwhile. Blocking; uses several threads.
FolderSearchResult searchInto(SearchMatches &matches, const FolderQuery &query, const JobControl *control);
/// The same for the whole result.
FolderSearchResult searchFolder(const FolderQuery &query, const JobControl *control = nullptr);

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "ContentView/Listing.h"
#include "Places/SearchTerms.h"

#include <QString>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace brellin {

class Decoder;
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
    std::vector<Location> files;   ///< exist, but cannot be examined or read
    std::vector<Location> cut;     ///< only their beginning was searched

    bool operator==(const SearchGaps &) const = default;
    bool empty() const { return folders.empty() && files.empty() && cut.empty(); }
};

/// „2 Ordner nicht lesbar, 1 Datei nur zum Teil durchsucht“
QString gapsText(const SearchGaps &gaps);
/// The paths as text.
QStringList gapsLines(const SearchGaps &gaps);

/// The line in which a file contains the text, by the file's path.
using Passages = std::map<std::string, QString, std::less<>>;

/// Result of a search below a folder.
struct FolderSearchResult {
    FileItems items;
    Passages passages;
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
    bool take(FileItem item, const QString &passage);
    /// Reads an entry; nullopt if it does not meet the filters, is gone, or cannot be examined, which is a gap.
    std::optional<FileItem> examine(const Location &entry, bool hidden);

    void addGap(std::vector<Location> SearchGaps::*kind, const Location &entry);

    /// Matches and gaps so far. Sorted by path, so that the order does not depend on threads.
    FolderSearchResult result() const;
    std::size_t size() const;

private:
    const SearchFilters m_filters;
    const Instant m_now;
    std::atomic<std::size_t> m_count = 0; ///< matches found, including those over the limit
    mutable std::mutex m_mutex;
    std::vector<FileItem> m_items;
    Passages m_passages;
    SearchGaps m_gaps;
};

/// Searches and adds to the matches.
using FolderSearching = std::function<FolderSearchResult(SearchMatches &, const FolderQuery &, const JobControl *)>;

/// Finds entries below a folder whose name contains the text, ignoring case; hidden entries and folders only if `hidden`
/// says so; if `terms` say so, also files whose content contains it (see ContentSearch). Adds to `matches`, so that
/// another thread can show them meanwhile. Blocking; uses several threads. `decoder` reads PDFs; without one they cannot
/// be read.
FolderSearchResult searchInto(SearchMatches &matches, const FolderQuery &query, const JobControl *control,
                              Decoder *decoder = nullptr);
/// The same for the whole result.
FolderSearchResult searchFolder(const FolderQuery &query, const JobControl *control = nullptr,
                                Decoder *decoder = nullptr);

} // namespace brellin

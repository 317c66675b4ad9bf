#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "ContentView/Listing.h"

#include <QString>

namespace brellin {

/// What a search below a folder found.
struct FolderSearchResult {
    FileItems items;
    bool capped = false; ///< there may be more than the items that are listed
    std::optional<Failure> error;
};

/// So many matches end a search.
constexpr std::size_t mostSearchResults = 3000;

/// Finds the entries below `folder` whose name contains `query`, without regard to case. Content of packages is never
/// searched; hidden entries, and what lies in hidden folders, only where they are shown. Blocking, with several threads.
FolderSearchResult searchFolder(const Location &folder, const QString &query, HiddenEntries hidden,
                                const JobControl *control = nullptr);

} // namespace brellin

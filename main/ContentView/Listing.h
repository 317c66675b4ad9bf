#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "Disk/Volumes.h"

#include <chrono>
#include <optional>

namespace brellin {

/// Whether hidden entries are listed.
enum class HiddenEntries { LeftOut, Shown };

/// One reading of a folder.
struct Listing {
    FileItems items; ///< in the order in which the file system lists them
    std::optional<Failure> error;
    std::optional<std::int64_t> freeSpace; ///< bytes that this user may still write on the folder's volume
    std::chrono::steady_clock::duration taken{};
};

/// Reads the entries of one folder with everything that rows show. An entry that cannot be examined is left out. Blocking,
/// with several threads for a big folder; callable from every thread. Cancelled, the error says so.
Listing readListing(const Location &folder, HiddenEntries hidden, const Volumes &volumes,
                    const JobControl *control = nullptr);

/// The same for entries from anywhere (the matches of a search); what is gone is left out.
FileItems readItems(const std::vector<Location> &locations, const JobControl *control = nullptr);

} // namespace brellin

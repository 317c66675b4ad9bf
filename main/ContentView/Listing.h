#pragma once

#include "Base/JobControl.h"
#include "ContentView/FileItems.h"
#include "Disk/Volumes.h"

#include <chrono>
#include <optional>

namespace brellin {

/// Whether hidden entries are included.
enum class HiddenEntries { LeftOut, Shown };

/// Whether the details of entries are read, which takes another file call for each.
enum class ItemDetails { LeftOut, Read };

/// Result of reading a folder.
struct Listing {
    FileItems items; ///< in directory order, unsorted
    std::optional<Failure> error;
    std::optional<std::int64_t>
        freeSpace; ///< bytes available to this user on the volume; none if the folder is missing
    std::chrono::steady_clock::duration taken{};
};

/// Reads a folder's entries with all attributes that rows show; leaves out entries that cannot be examined. Blocking;
/// uses several threads for large folders. Thread-safe. `error` is set if cancelled.
Listing readListing(const Location &folder, HiddenEntries hidden, const Volumes &volumes,
                    const JobControl *control = nullptr, ItemDetails details = ItemDetails::LeftOut);

/// Reads entries with details from any folders, e.g. search matches; leaves out those that are gone.
FileItems readItems(const std::vector<Location> &locations, const JobControl *control = nullptr);

} // namespace brellin

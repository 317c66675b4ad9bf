#pragma once

#include "Base/JobControl.h"
#include "Disk/EntryMark.h"
#include "FileOperations/BatchRenamePlan.h"
#include "System/Decoders.h"

#include <memory>
#include <vector>

namespace brellin {

/// What a batch rename has to know of the disk.
struct RenameFacts {
    NamesInFolders folders;
    std::vector<EntryMark> marks; ///< of the entries, in their order
    std::vector<QDate> days;      ///< the same; empty where nobody needs them

    bool operator==(const RenameFacts &) const = default;
};

enum class Days { Read, Skip };

/// Reads them. Counts entries as progress. Blocking.
RenameFacts readRenameFacts(const std::vector<Location> &entries, Days days, Decoder &decoder, JobControl &control);

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Disk/EntryMark.h"
#include "FileOperations/BatchRenamePlan.h"
#include "System/Decoders.h"

#include <memory>
#include <vector>

namespace brellin {

/// What a batch rename needs to know about the disk.
struct RenameFacts {
    NamesInFolders folders;
    std::vector<EntryMark> marks; ///< of the entries, in their order
    std::vector<QDate> days;      ///< likewise; empty unless requested

    bool operator==(const RenameFacts &) const = default;
};

enum class Days { Read, Skip };

/// Reads the facts; progress counts entries. Shorter lists if cancelled. Blocking.
RenameFacts readRenameFacts(const std::vector<Location> &entries, Days days, Decoder &decoder, JobControl &control);

} // namespace brellin

#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <sys/stat.h>

namespace brellin {

/// Status of a source when its copy began.
struct SourceStatus {
    struct stat status;
    /// The change time is old enough that any later change must alter it: volumes store times in steps of some
    /// milliseconds or whole seconds.
    bool settled;

    static SourceStatus of(const struct stat &status);
    /// Status of an open file or folder.
    static Result<SourceStatus> ofOpen(int file);
};

/// Whether the modification time is the same.
bool sameModified(const struct stat &a, const struct stat &b);

/// Whether size, modification and change time are the same.
bool sameTimesAndSize(const struct stat &a, const struct stat &b);

} // namespace brellin

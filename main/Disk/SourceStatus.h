#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <sys/stat.h>

namespace brellin {

/// What a source was when its copy began.
struct SourceStatus {
    struct stat status;
    /// Its change time lies so far back that whatever changes it from now on gives it another one: volumes count in ticks of
    /// some milliseconds, some in whole seconds.
    bool settled;

    static SourceStatus of(const struct stat &status);
    /// Of an open file or folder.
    static Result<SourceStatus> ofOpen(int file);
};

/// Whether the time of modification is the same.
bool sameModified(const struct stat &a, const struct stat &b);

/// Whether neither content nor anything else of an entry was changed between two looks, as far as its times tell.
bool sameTimesAndSize(const struct stat &a, const struct stat &b);

} // namespace brellin

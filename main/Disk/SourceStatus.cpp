#include "Disk/SourceStatus.h"

#include "Base/Result.h"

#include <chrono>

namespace brellin {

SourceStatus SourceStatus::of(const struct stat &status)
{
    using namespace std::chrono;
    const auto changed = seconds(status.st_ctim.tv_sec) + nanoseconds(status.st_ctim.tv_nsec);
    const nanoseconds tick = status.st_ctim.tv_nsec == 0 ? nanoseconds(seconds(2)) : nanoseconds(milliseconds(20));
    // A change time in the future, e.g. by another machine's clock, is never settled.
    return {status, system_clock::now().time_since_epoch() - changed > tick};
}

Result<SourceStatus> SourceStatus::ofOpen(int file)
{
    struct stat status{};
    if (::fstat(file, &status) != 0)
        return failure(Failure::lastSystem());
    return of(status);
}

namespace {

bool sameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

bool sameModified(const struct stat &a, const struct stat &b)
{
    return sameTime(a.st_mtim, b.st_mtim);
}

bool sameTimesAndSize(const struct stat &a, const struct stat &b)
{
    return a.st_size == b.st_size && sameModified(a, b) && sameTime(a.st_ctim, b.st_ctim);
}

} // namespace brellin

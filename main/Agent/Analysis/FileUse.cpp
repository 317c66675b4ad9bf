#include "Agent/Analysis/FileUse.h"

#include <algorithm>
#include <chrono>

namespace brellin {

namespace {

constexpr std::chrono::hours firstDay{24};

} // namespace

int daysBetween(Instant earlier, Instant now)
{
    return earlier < now ? static_cast<int>(std::chrono::floor<std::chrono::days>(now - earlier).count()) : 0;
}

Instant lastUseOf(const FileAttributes &file)
{
    return std::max(file.accessed, file.modified);
}

Instant settledSince(const FileAttributes &file)
{
    return std::max(lastUseOf(file), file.created.value_or(file.modified));
}

bool isNeverOpened(const FileAttributes &file)
{
    // Copying preserves the modification time; one later than the arrival means the user changed the file.
    const Instant came = file.created.value_or(file.modified);
    return file.accessed <= std::max(came, file.modified) + firstDay && file.modified <= came + firstDay;
}

bool isLongerAgo(Instant earlier, int days, Instant now)
{
    // In floating-point seconds: 300 years in nanoseconds overflow.
    return std::chrono::duration<double>(now - earlier).count() > 86400.0 * days;
}

} // namespace brellin

#include "Decoding/Confinement.h"

#include "Decoding/Linux/SystemCallFilter.h"

#include <csignal>
#include <fstream>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr rlim_t cpuSeconds = 8;
/// A lasting process is replaced long before this; it holds for one whose owner has died.
constexpr rlim_t lastingCpuSeconds = 600;
/// As long as a big archive may take: the end of one whose reader has died, if it does not notice.
constexpr rlim_t archiveCpuSeconds = 24 * 3600;
constexpr rlim_t furtherMemory = rlim_t(1) << 30U;
constexpr rlim_t openFiles = 64;

/// What the process has mapped by now, in bytes: libraries, and with a sanitizer a lot more.
rlim_t mappedMemory()
{
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

Result<void> limit(__rlimit_resource resource, rlim_t most)
{
    rlimit limits{};
    if (::getrlimit(resource, &limits) != 0)
        return failure(Failure::lastSystem());
    if (limits.rlim_max != RLIM_INFINITY && limits.rlim_max < most)
        most = limits.rlim_max;
    limits = {most, most};
    if (::setrlimit(resource, &limits) != 0)
        return failure(Failure::lastSystem());
    return {};
}

rlim_t cpuSecondsFor(ConfinedWork work)
{
    switch (work) {
    case ConfinedWork::WholeArchive:
        return archiveCpuSeconds;
    case ConfinedWork::ManyFiles:
        return lastingCpuSeconds;
    case ConfinedWork::OneFile:
    case ConfinedWork::OtherProgram:
        break;
    }
    return cpuSeconds;
}

} // namespace

Result<void> confineThisProcess(ConfinedWork work)
{
    TRY(limit(RLIMIT_CPU, cpuSecondsFor(work)));
    TRY(limit(RLIMIT_AS, mappedMemory() + furtherMemory));
    TRY(limit(RLIMIT_NOFILE, openFiles));
    TRY(limit(RLIMIT_FSIZE, 0));
    TRY(limit(RLIMIT_CORE, 0));
    // Writing to a file is then an error and not the end: the message why a file could not be read may go to one.
    std::signal(SIGXFSZ, SIG_IGN);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return failure(Failure::lastSystem());
    // A kernel without filters still has the limits.
    if (const Result<void> filtered = filterSystemCalls(work);
        !filtered && !filtered.error().is(std::errc::invalid_argument))
        return filtered;
    return {};
}

} // namespace brellin

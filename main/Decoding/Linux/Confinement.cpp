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
/// Safety net in case the owner has died; a lasting process is replaced long before.
constexpr rlim_t lastingCpuSeconds = 600;
/// Long enough for large archives; ends a process that does not notice its reader's death.
constexpr rlim_t archiveCpuSeconds = 24 * 3600;
constexpr rlim_t furtherMemory = rlim_t(1) << 30U;
constexpr rlim_t openFiles = 64;

/// Memory mapped so far in bytes: libraries, and much more with a sanitizer.
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
    // Makes writing to a file fail instead of killing the process: standard error may be a file.
    std::signal(SIGXFSZ, SIG_IGN);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return failure(Failure::lastSystem());
    // Without seccomp in the kernel the limits still hold.
    if (const Result<void> filtered = filterSystemCalls(work);
        !filtered && !filtered.error().is(std::errc::invalid_argument))
        return filtered;
    return {};
}

} // namespace brellin

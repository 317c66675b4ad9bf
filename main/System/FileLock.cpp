#include "System/FileLock.h"

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace brellin {

Result<FileLock> FileLock::tryNow(const Location &file)
{
    Descriptor open(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    while (::flock(open.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR)
            return failure(Failure::lastSystem());
    }
    return FileLock(std::move(open));
}

Result<FileLock> FileLock::wait(const Location &file, std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Result<FileLock> lock = tryNow(file);
        const bool taken = !lock && lock.error().is(std::errc::resource_unavailable_try_again);
        if (!taken || std::chrono::steady_clock::now() >= end)
            return lock;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace brellin

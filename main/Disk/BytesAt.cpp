#include "Disk/BytesAt.h"

#include <cerrno>

#include <unistd.h>

namespace brellin {

Result<std::size_t> readAt(int file, char *into, std::size_t capacity, off_t at)
{
    std::size_t got = 0;
    while (got < capacity) {
        const ssize_t length = ::pread(file, into + got, capacity - got, at + static_cast<off_t>(got));
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            return failure(Failure::lastSystem());
        if (length == 0)
            break;
        got += static_cast<std::size_t>(length);
    }
    return got;
}

Result<void> writeAt(int file, const char *bytes, std::size_t size, off_t at)
{
    while (size > 0) {
        const ssize_t written = ::pwrite(file, bytes, size, at);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return failure(written == 0 ? Failure::system(EIO) : Failure::lastSystem());
        bytes += written;
        size -= static_cast<std::size_t>(written);
        at += written;
    }
    return {};
}

} // namespace brellin

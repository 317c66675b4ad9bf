#include "System/ReadWhole.h"

#include "Base/Descriptor.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

Result<QByteArray> readWhole(const Location &file, qint64 most)
{
    const Descriptor open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    struct stat status{};
    if (::fstat(open.number(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size > most)
        return failure(Failure::system(EFBIG));
    QByteArray content;
    std::array<char, 65536> piece{};
    while (true) {
        const ssize_t length = ::read(open.number(), piece.data(), piece.size());
        if (length < 0 && errno == EINTR)
            continue;
        if (length < 0)
            return failure(Failure::lastSystem());
        if (length == 0)
            return content;
        if (content.size() + length > most)
            return failure(Failure::system(EFBIG));
        content.append(piece.data(), length);
    }
}

} // namespace brellin

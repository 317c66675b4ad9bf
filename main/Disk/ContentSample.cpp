#include "Disk/ContentSample.h"

#include "Disk/Descriptor.h"
#include "Disk/Digest.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::int64_t pieceSize = 4096;

/// Appends `size` bytes from `offset`; a file that ends before that has changed meanwhile.
Result<void> readAt(const Descriptor &file, std::int64_t offset, std::int64_t size, QByteArray &into)
{
    const qsizetype start = into.size();
    into.resize(start + size);
    for (std::int64_t at = 0; at < size;) {
        const ssize_t length =
            ::pread(file.number(), into.data() + start + at, static_cast<std::size_t>(size - at), offset + at);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return failure(Failure::system(length < 0 ? errno : EIO));
        at += length;
    }
    return {};
}

} // namespace

Result<ContentSample> sampleContent(const Location &file, std::int64_t size)
{
    const NameIn entry{AT_FDCWD, file.c_str()};
    const Descriptor source = TRY(openForReading(entry));
    QByteArray content;
    if (size <= 2 * pieceSize) {
        TRY(readAt(source, 0, size, content));
        return ContentSample{sha256OfBytes(content), true};
    }
    TRY(readAt(source, 0, pieceSize, content));
    TRY(readAt(source, size - pieceSize, pieceSize, content));
    return ContentSample{sha256OfBytes(content), false};
}

} // namespace brellin

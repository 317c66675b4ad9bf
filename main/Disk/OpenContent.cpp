#include "Disk/OpenContent.h"

#include "Disk/BytesAt.h"
#include "Disk/Digest.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <functional>
#include <string_view>

#include <fcntl.h>

namespace brellin {

namespace {

constexpr std::int64_t endSize = 4096;
constexpr std::int64_t smallSize = 65'536;
constexpr std::int64_t pieceOfContent = 1'048'576;

/// A buffer kept per thread, since allocating for thousands of small files is slow.
char *pieceFor(std::size_t size, std::size_t number)
{
    thread_local std::array<std::vector<char>, 2> kept;
    std::vector<char> &piece = kept[number];
    if (piece.size() < size)
        piece.resize(size);
    return piece.data();
}

std::size_t pieceAt(std::int64_t offset, std::int64_t end)
{
    return static_cast<std::size_t>(std::min(pieceOfContent, end - offset));
}

} // namespace

Result<OpenContent> OpenContent::open(const std::string &path, const FileState &seen)
{
    Descriptor file = TRY(openForReading({AT_FDCWD, path.c_str()}));
    const FileAttributes now = TRY(attributesOf(file));
    if (!now.isFile() || FileState::of(now) != seen)
        return failure(Failure::system(ESTALE));
    return OpenContent(std::move(file), seen.size);
}

bool OpenContent::fitsOnePiece() const
{
    return m_size <= smallSize;
}

/// Fails if the file ends early, i.e. was changed meanwhile.
Result<void> OpenContent::read(std::int64_t offset, char *into, std::size_t size) const
{
    return TRY(readAt(m_file.number(), into, size, offset)) == size ? Result<void>() : failure(Failure::system(EIO));
}

Result<std::size_t> OpenContent::endsHash() const
{
    std::array<char, 2 * endSize> ends; // NOLINT(*-member-init): filled by the system
    const std::int64_t first = std::min(m_size, endSize);
    const std::int64_t last = std::min(m_size - first, endSize);
    TRY(read(0, ends.data(), static_cast<std::size_t>(first)));
    TRY(read(m_size - last, ends.data() + first, static_cast<std::size_t>(last)));
    return std::hash<std::string_view>()({ends.data(), static_cast<std::size_t>(first + last)});
}

Result<QByteArray> OpenContent::digest(const JobControl *control) const
{
    Sha256 hash;
    for (std::int64_t offset = 0; offset < m_size; offset += pieceOfContent) {
        if (control != nullptr && control->cancelled())
            return failure(Failure::cancelled());
        const std::size_t size = pieceAt(offset, m_size);
        char *const piece = pieceFor(size, 0);
        TRY(read(offset, piece, size));
        hash.add(piece, size);
    }
    QByteArray digest = hash.hex();
    return digest.isEmpty() ? Result<QByteArray>(failure(Failure::system(EIO))) : Result<QByteArray>(digest);
}

bool OpenContent::areEqual(const std::vector<const OpenContent *> &files, const JobControl *control)
{
    const std::int64_t end = files.front()->m_size;
    for (std::int64_t offset = 0; offset < end; offset += pieceOfContent) {
        const std::size_t size = pieceAt(offset, end);
        char *const first = pieceFor(size, 0);
        char *const other = pieceFor(size, 1);
        if ((control != nullptr && control->cancelled()) || !files.front()->read(offset, first, size))
            return false;
        const auto isSame = [&](const OpenContent *file) {
            return file->m_size == end && file->read(offset, other, size) && std::memcmp(first, other, size) == 0;
        };
        if (!std::all_of(files.begin() + 1, files.end(), isSame))
            return false;
    }
    return true;
}

} // namespace brellin

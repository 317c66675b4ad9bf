#include "Disk/CopyEntryData.h"

#include "Disk/BytesAt.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::size_t bufferSize = std::size_t(1) << 20;
constexpr off_t smallFile = 128 << 10;

/// Whether the volumes do not support the call at all, independent of this file.
bool isNeverOffered(int error)
{
    return error == EXDEV || error == EOPNOTSUPP || error == ENOTTY || error == ENOSYS;
}

/// Some volumes can only extend a file by writing.
bool cannotGrow(const Failure &why)
{
    return why.is(std::errc::operation_not_permitted) || why.is(std::errc::invalid_argument) ||
           why.is(std::errc::not_supported) || why.is(std::errc::operation_not_supported) ||
           why.is(std::errc::function_not_supported);
}

Failure becameShorter()
{
    return {QStringLiteral("Die Datei wurde während des Kopierens kürzer."), {}};
}

} // namespace

Result<void> CopyData::copy(int source, const struct stat &status, int destination)
{
    m_ofFile = 0;
    if (status.st_dev != m_device) {
        m_device = status.st_dev;
        m_mayClone = m_mayCopyInKernel = true;
    }
    // Kernel files (procfs, sysfs) report size 0 but have content.
    if (status.st_size == 0)
        return readAndWrite(source, destination, 0, std::numeric_limits<off_t>::max());
    if (m_mayClone && cloned(source, destination)) {
        count(status.st_size);
        return {};
    }
    constexpr blkcnt_t blockSize = 512;
    if (status.st_blocks * blockSize < status.st_size)
        return copyWithHoles(source, status.st_size, destination);
    if (status.st_size <= smallFile)
        return readAndWrite(source, destination, 0, status.st_size);
    ::posix_fadvise(source, 0, 0, POSIX_FADV_SEQUENTIAL);
    return copyRange(source, destination, 0, status.st_size);
}

Result<void> CopyData::copyWithHoles(int source, off_t size, int destination)
{
    Result<void> copied = copyExtents(source, size, destination);
    if (copied || !cannotGrow(copied.error()))
        return copied;
    takeBack();
    return readAndWrite(source, destination, 0, size);
}

bool CopyData::cloned(int source, int destination)
{
    if (::ioctl(destination, FICLONE, source) == 0)
        return true;
    m_mayClone = !isNeverOffered(errno);
    return false;
}

/// Copies only data; sets the size at the end, so that a final hole is preserved.
Result<void> CopyData::copyExtents(int source, off_t size, int destination)
{
    for (off_t at = 0; at < size;) {
        const off_t data = ::lseek(source, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break;
        const off_t hole = data < 0 ? -1 : ::lseek(source, data, SEEK_HOLE);
        const bool known = data >= at && hole > data;
        const off_t end = known ? std::min(hole, size) : size;
        TRY(copyRange(source, destination, known ? std::min(data, size) : at, end));
        at = end;
    }
    struct stat now{};
    if (::fstat(source, &now) != 0)
        return failure(Failure::lastSystem());
    if (now.st_size < size)
        return failure(becameShorter());
    if (::ftruncate(destination, size) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> CopyData::copyRange(int source, int destination, off_t from, off_t end)
{
    if (m_mayCopyInKernel)
        from = TRY(copyInKernel(source, destination, from, end));
    return readAndWrite(source, destination, from, end);
}

/// Stops at any error: reading and writing continues from there and reports real errors.
Result<off_t> CopyData::copyInKernel(int source, int destination, off_t from, off_t end)
{
    using Clock = std::chrono::steady_clock;
    off_t to = from;
    while (from < end) {
        const auto begun = Clock::now();
        const std::size_t wanted = std::min(m_chunk, static_cast<std::size_t>(end - from));
        const ssize_t copied = ::copy_file_range(source, &from, destination, &to, wanted, 0);
        if (copied < 0 && errno == EINTR)
            continue;
        if (copied < 0)
            m_mayCopyInKernel = !isNeverOffered(errno);
        // Some file systems return 0 before the end.
        if (copied <= 0)
            return to;
        count(copied);
        TRY(m_pulse.beat());
        const auto took = Clock::now() - begun;
        if (took < std::chrono::milliseconds(10))
            m_chunk = std::min(m_chunk * 2, std::size_t(32) << 20);
        else if (took > std::chrono::milliseconds(40))
            m_chunk = std::max(m_chunk / 2, std::size_t(128) << 10);
    }
    return from;
}

Result<void> CopyData::readAndWrite(int source, int destination, off_t from, off_t end)
{
    const bool untilEnd = end == std::numeric_limits<off_t>::max();
    while (from < end) {
        const std::size_t wanted = std::min(bufferSize, static_cast<std::size_t>(end - from));
        const ssize_t got = ::pread(source, buffer(), wanted, from);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failure(Failure::lastSystem());
        if (got == 0 && untilEnd)
            return {};
        if (got == 0)
            return failure(becameShorter());
        TRY(writeAt(destination, buffer(), static_cast<std::size_t>(got), from));
        from += got;
        count(got);
        TRY(m_pulse.beat());
    }
    return {};
}

void CopyData::count(std::int64_t bytes)
{
    m_ofFile += bytes;
    m_pulse.addBytes(bytes);
}

char *CopyData::buffer()
{
    if (!m_buffer)
        m_buffer = std::make_unique_for_overwrite<char[]>(bufferSize);
    return m_buffer.get();
}

} // namespace brellin

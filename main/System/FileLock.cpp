#include "System/FileLock.h"

#include <QByteArray>

#include <array>
#include <thread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Closes its descriptor on destruction.
class OpenFile {
public:
    explicit OpenFile(int descriptor) : m_descriptor(descriptor) {}
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;
    operator int() const { return m_descriptor; }

private:
    int m_descriptor;
};

Result<void> writeAll(int descriptor, const QByteArray &content)
{
    for (qsizetype at = 0; at < content.size();) {
        const ssize_t written =
            ::write(descriptor, content.constData() + at, static_cast<std::size_t>(content.size() - at));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return failure(Failure::lastSystem());
        at += written;
    }
    return {};
}

Result<void> flushFolder(const Location &folder)
{
    const OpenFile open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (open < 0 || ::fsync(open) != 0)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace

FileLock &FileLock::operator=(FileLock &&other) noexcept
{
    if (this != &other) {
        release();
        m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
}

Result<FileLock> FileLock::tryNow(const Location &file)
{
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0)
        return failure(Failure::lastSystem());
    FileLock lock(descriptor);
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR)
            return failure(Failure::lastSystem());
    }
    return lock;
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

void FileLock::release()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

Result<void> createPrivateFolders(const Location &folder)
{
    if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST)
        return {};
    if (errno != ENOENT || !folder.has_relative_path())
        return failure(Failure::lastSystem());
    TRY(createPrivateFolders(folder.parent_path()));
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return failure(Failure::lastSystem());
    return {};
}

namespace {

enum class Flush { No, Yes };

Result<void> replaceContent(const Location &file, const QByteArray &content, Flush flush)
{
    // Settings may be a symlink to a file elsewhere.
    std::error_code unresolved;
    Location target = std::filesystem::canonical(file, unresolved);
    if (unresolved)
        target = file;
    std::string pattern = target.native() + ".XXXXXX";
    const OpenFile open(::mkostemp(pattern.data(), O_CLOEXEC));
    if (open < 0)
        return failure(Failure::lastSystem());
    Result<void> written = writeAll(open, content);
    if (written && flush == Flush::Yes && ::fsync(open) != 0)
        written = failure(Failure::lastSystem());
    if (written && ::rename(pattern.c_str(), target.c_str()) != 0)
        written = failure(Failure::lastSystem());
    if (!written) {
        ::unlink(pattern.c_str());
        return written;
    }
    if (flush == Flush::No)
        return {};
    return flushFolder(target.has_parent_path() ? target.parent_path() : Location("."));
}

} // namespace

Result<void> writeAtomically(const Location &file, const QByteArray &content)
{
    return replaceContent(file, content, Flush::Yes);
}

Result<void> writeUnflushed(const Location &file, const QByteArray &content)
{
    return replaceContent(file, content, Flush::No);
}

Result<QByteArray> readWhole(const Location &file, qint64 most)
{
    const OpenFile open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (open < 0)
        return failure(Failure::lastSystem());
    struct stat status{};
    if (::fstat(open, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > most)
        return failure(Failure::system(EFBIG));
    QByteArray content;
    std::array<char, 65536> piece{};
    while (true) {
        const ssize_t length = ::read(open, piece.data(), piece.size());
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

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <chrono>
#include <limits>
#include <utility>

namespace brellin {

/// An exclusive advisory lock on a file, held by one process (and one object) at a time and given back by the system when
/// the process dies, however it dies. The file is created (mode 0600) and stays.
class FileLock {
public:
    FileLock() = default;
    ~FileLock() { release(); }
    FileLock(FileLock &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileLock &operator=(FileLock &&other) noexcept;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// Waits until the lock can be had, and no longer than that: whoever holds it may have been stopped.
    static Result<FileLock> wait(const Location &file, std::chrono::milliseconds patience);
    /// At once: `errc::resource_unavailable_try_again` while somebody else holds it.
    static Result<FileLock> tryNow(const Location &file);

    bool held() const { return m_descriptor >= 0; }
    /// The open file, for whoever writes into what he has locked.
    int descriptor() const { return m_descriptor; }
    void release();

private:
    explicit FileLock(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor = -1;
};

/// Creates a folder and those above it, each with mode 0700 where it is new.
Result<void> createPrivateFolders(const Location &folder);

/// Replaces a file's content so that a reader, or a crash, finds the old content or the new one: written beside it (mode
/// 0600), flushed, renamed over, and the rename flushed. A link is replaced at its target.
Result<void> writeAtomically(const Location &file, const QByteArray &content);
/// The same without flushing: for what a flushed file beside it makes up for.
Result<void> writeUnflushed(const Location &file, const QByteArray &content);

/// The whole content of a file; `errc::file_too_large` where it is longer than `most` bytes.
Result<QByteArray> readWhole(const Location &file, qint64 most = std::numeric_limits<qint64>::max());

} // namespace brellin

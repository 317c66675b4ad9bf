#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <chrono>
#include <limits>
#include <utility>

namespace brellin {

/// An exclusive advisory lock on a file, held by one object at a time. The system releases it when the process dies.
/// Creates the file (mode 0600) and leaves it in place.
class FileLock {
public:
    FileLock() = default;
    ~FileLock() { release(); }
    FileLock(FileLock &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileLock &operator=(FileLock &&other) noexcept;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// Waits for the lock up to `patience`, since its owner may be suspended.
    static Result<FileLock> wait(const Location &file, std::chrono::milliseconds patience);
    /// Does not wait: `errc::resource_unavailable_try_again` if the lock is held.
    static Result<FileLock> tryNow(const Location &file);

    bool held() const { return m_descriptor >= 0; }
    /// The descriptor of the locked file, for its owner to write.
    int descriptor() const { return m_descriptor; }
    void release();

private:
    explicit FileLock(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor = -1;
};

/// Creates a folder and its missing parents with mode 0700.
Result<void> createPrivateFolders(const Location &folder);

/// Replaces a file atomically, even across a crash: writes a temporary file beside it (mode 0600), flushes it, renames
/// it over the old one and flushes the folder. A symlink is replaced at its target.
Result<void> writeAtomically(const Location &file, const QByteArray &content);
/// The same without flushing, for files that can be restored from a flushed one beside them.
Result<void> writeUnflushed(const Location &file, const QByteArray &content);

/// The whole content of a file; `errc::file_too_large` above `most` bytes.
Result<QByteArray> readWhole(const Location &file, qint64 most = std::numeric_limits<qint64>::max());

} // namespace brellin

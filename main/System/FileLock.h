#pragma once

#include "Base/Descriptor.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <chrono>
#include <utility>

namespace brellin {

/// An exclusive advisory lock on a file, held by one object at a time. The system releases it when the process dies.
/// Creates the file (mode 0600) and leaves it in place.
class FileLock {
public:
    FileLock() = default;

    /// Waits for the lock up to `patience`, since its owner may be suspended.
    static Result<FileLock> wait(const Location &file, std::chrono::milliseconds patience);
    /// Does not wait: `errc::resource_unavailable_try_again` if the lock is held.
    static Result<FileLock> tryNow(const Location &file);

    bool held() const { return m_file.isOpen(); }
    /// The descriptor of the locked file, for its owner to write.
    int descriptor() const { return m_file.number(); }
    void release() { m_file.reset(); }

private:
    explicit FileLock(Descriptor file) : m_file(std::move(file)) {}

    Descriptor m_file;
};

} // namespace brellin

#pragma once

#include "Support/PrivateMount.h"

namespace brellin::test {

/// A disk that takes what is written to it and fails only when the system brings it to the medium, mounted at a folder; for
/// root, where the tools for it are installed.
class FailingDisk {
public:
    /// `workFolder` is an empty folder for the medium. What fits on it is less than half of `bytes`.
    FailingDisk(const Location &workFolder, const Location &mountPoint, std::int64_t bytes);
    ~FailingDisk();
    FailingDisk(const FailingDisk &) = delete;
    FailingDisk &operator=(const FailingDisk &) = delete;
    explicit operator bool() const { return m_mounted; }

private:
    PrivateMount m_medium;
    Location m_mountPoint;
    bool m_mounted = false;
};

} // namespace brellin::test

#pragma once

#include "Support/PrivateMount.h"

namespace brellin::test {

/// A volume that accepts writes and reports errors only on writeback, mounted at a folder. Needs root and the tools of
/// ext4.
class FailingDisk {
public:
    /// `workFolder` must be empty; it holds the medium, which takes less than half of `bytes`.
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

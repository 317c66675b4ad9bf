#pragma once

#include "Base/Result.h"

#include <QString>

#include <map>
#include <string>

namespace brellin {

/// What the disk service knows about a device.
struct DiskFacts {
    QString label;          ///< empty if it has none
    bool removable = false; ///< the user may unmount and remove it
    bool ejectable = false; ///< the drive can eject its medium

    bool operator==(const DiskFacts &) const = default;
};

/// Port to the system's disk service. Blocking: call on workers only.
class DiskService {
public:
    virtual ~DiskService() = default;
    /// All known devices ("/dev/sdb1"). Fails if there is no such service.
    virtual Result<std::map<std::string, DiskFacts>> facts() = 0;
    /// Flushes and unmounts a device and, if its drive can, ejects the medium.
    virtual Result<void> eject(const std::string &device) = 0;
};

} // namespace brellin

#pragma once

#include "Base/Result.h"

#include <QString>

#include <map>
#include <string>

namespace brellin {

/// What the system's disk service knows of a device.
struct DiskFacts {
    QString label;          ///< empty where it has none
    bool removable = false; ///< may be unmounted and taken out by the user
    bool ejectable = false; ///< its drive can eject the medium

    bool operator==(const DiskFacts &) const = default;
};

/// The port to the system's disk service. Blocking: called on workers only.
class DiskService {
public:
    virtual ~DiskService() = default;
    /// Everything it knows, by device ("/dev/sdb1"); a failure where there is no such service.
    virtual Result<std::map<std::string, DiskFacts>> facts() = 0;
    /// Writes out and unmounts a device and, where its drive can, ejects the medium.
    virtual Result<void> eject(const std::string &device) = 0;
};

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace brellin {

/// A mounted volume.
struct Volume {
    Location root;
    QString name;       ///< label or last component of the mount point
    QString fileSystem; ///< e.g. "ext4", "vfat", "nfs4"
    bool local = true;
    bool readOnly = false;

    bool operator==(const Volume &) const = default;
};

/// Port for queries about volumes.
class Volumes {
public:
    virtual ~Volumes() = default;

    /// Whether two entries are on the same volume, so that a rename is possible: same device and same mount. A missing
    /// entry counts as its nearest existing ancestor; false if unknown.
    virtual bool same(const Location &a, const Location &b) const = 0;
    /// Decided by the mount table and the path's text, without accessing the volume.
    virtual bool isLocal(const Location &location) const = 0;
    /// The top folder of the volume that contains `location`, found by walking up until the mount changes.
    virtual Result<Location> top(const Location &location) const = 0;
    /// The volumes that users know: root, removable and network mounts, no system or bind mounts.
    virtual std::vector<Volume> mounted() const = 0;
    /// File system type of `location` ("vfat"), also for volumes not listed by mounted(); empty if unknown.
    virtual QString fileSystem(const Location &location) const = 0;
    /// Bytes available to this user; fails if the volume does not tell.
    virtual Result<std::int64_t> available(const Location &location) const = 0;
};

/// The real implementation.
class SystemVolumes : public Volumes {
public:
    bool same(const Location &a, const Location &b) const override;
    bool isLocal(const Location &location) const override;
    Result<Location> top(const Location &location) const override;
    std::vector<Volume> mounted() const override;
    QString fileSystem(const Location &location) const override;
    Result<std::int64_t> available(const Location &location) const override;
};

} // namespace brellin

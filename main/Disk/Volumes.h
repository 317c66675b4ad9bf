#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace brellin {

/// One mounted volume.
struct Volume {
    Location root;
    QString name;       ///< label or last component, for reading
    QString fileSystem; ///< "ext4", "vfat", "nfs4" …
    bool local = true;
    bool readOnly = false;

    bool operator==(const Volume &) const = default;
};

/// The port for questions about volumes.
class Volumes {
public:
    virtual ~Volumes() = default;

    /// Whether two entries lie on one volume, so that a rename may go from one to the other: same device and same
    /// mount. Of an entry that does not exist, its deepest existing parent decides; doubt answers false.
    virtual bool same(const Location &a, const Location &b) const = 0;
    /// Decided from the mount table by path text, without touching the volume.
    virtual bool isLocal(const Location &location) const = 0;
    /// The top folder of the volume that holds `location`, found by walking up until the mount changes.
    virtual Result<Location> top(const Location &location) const = 0;
    /// What a person sees as volumes: the root, removable and network mounts; no system or bind mounts.
    virtual std::vector<Volume> mounted() const = 0;
    /// The type of the file system that holds `location` ("vfat"), whether a person sees it as a volume or not; empty where
    /// nobody can tell.
    virtual QString fileSystem(const Location &location) const = 0;
    /// Bytes that this user may still write. A failure where the volume does not tell.
    virtual Result<std::int64_t> available(const Location &location) const = 0;
};

/// The real one.
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

#pragma once

#include "Disk/Trash.h"
#include "Disk/Volumes.h"

namespace brellin {

/// The system's own Trash: on Linux the one of the freedesktop.org Trash specification 1.0 (home trash for the home
/// volume, `$topdir/.Trash/$uid` or `$topdir/.Trash-$uid` elsewhere). `volumes` outlives it.
class SystemTrash : public Trash {
public:
    /// `homeTrash` is the folder holding "files" and "info" ($XDG_DATA_HOME/Trash).
    SystemTrash(Location homeTrash, const Volumes &volumes);

    Result<Location> put(const Location &entry) override;
    bool possible(const Location &entry) const override;
    Result<void> restore(const Location &trashed, const Location &original, const Location &destination) override;
    std::optional<Location> find(const Location &original, const FileIdentity &identity) const override;
    bool holds(const Location &location) const override;

private:
    Location m_homeTrash;
    const Volumes &m_volumes;
};

} // namespace brellin

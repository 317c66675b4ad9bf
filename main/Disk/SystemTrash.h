#pragma once

#include "Disk/Trash.h"
#include "Disk/Volumes.h"

namespace brellin {

/// The system's Trash, on Linux by version 1.0 of freedesktop.org's Trash: the home Trash for the home volume,
/// `$topdir/.Trash/$uid` or `$topdir/.Trash-$uid` elsewhere. `volumes` must outlive it.
class SystemTrash : public Trash {
public:
    /// `homeTrash` contains "files" and "info" ($XDG_DATA_HOME/Trash).
    SystemTrash(const Location &homeTrash, const Volumes &volumes);

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

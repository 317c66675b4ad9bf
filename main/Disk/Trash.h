#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <optional>

namespace brellin {

/// Port to the user's Trash. Implementations never delete anything of the user's.
class Trash {
public:
    virtual ~Trash() = default;

    /// Moves an entry (a link itself, not its target) to its volume's Trash and returns its location there. Fails, with
    /// the entry unchanged, if the volume has no usable Trash, or if the entry is in a Trash or contains one or another
    /// volume.
    virtual Result<Location> put(const Location &entry) = 0;

    /// Whether `put` would probably succeed: the entry may be moved, and its volume has a usable Trash. Changes
    /// nothing.
    virtual bool possible(const Location &entry) const = 0;

    /// Moves `trashed`, a location returned by `put`, to exactly `destination`, which must be free
    /// (`errc::file_exists`). Fails unless the Trash's record names `original` as its origin. `errc::cross_device_link`
    /// if a rename is impossible.
    virtual Result<void> restore(const Location &trashed, const Location &original, const Location &destination) = 0;

    /// The present location in the Trash of the entry with this identity that was at `original`.
    virtual std::optional<Location> find(const Location &original, const FileIdentity &identity) const = 0;

    /// Whether `location` is directly in a Trash of this user.
    virtual bool holds(const Location &location) const = 0;
};

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <optional>

namespace brellin {

/// The port to the user's Trash. Nothing behind it ever deletes anything of the user's.
class Trash {
public:
    virtual ~Trash() = default;

    /// Puts an entry (a link itself, not its target) into the Trash of its volume and gives its place there. Fails
    /// where the volume has no Trash that can be used; the entry is then untouched.
    virtual Result<Location> put(const Location &entry) = 0;

    /// Whether `put` would find a usable Trash for this entry. Nothing is changed for good.
    virtual bool possible(const Location &entry) const = 0;

    /// Takes `trashed` (a place that `put` gave) back out to exactly `destination`, which must be free
    /// (`errc::file_exists`). Refused unless the Trash's record names `original` as the place it came from.
    /// `errc::cross_device_link` where a rename cannot do it.
    virtual Result<void> restore(const Location &trashed, const Location &original, const Location &destination) = 0;

    /// Where in the Trash the entry with this identity, once at `original`, lies now.
    virtual std::optional<Location> find(const Location &original, const FileIdentity &identity) const = 0;

    /// Whether `location` is an entry directly in a Trash that belongs to this user.
    virtual bool holds(const Location &location) const = 0;
};

} // namespace brellin

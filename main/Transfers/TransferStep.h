#pragma once

#include "Base/Location.h"
#include "Disk/SeenTree.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brellin {

enum class TransferKind { Copy, Move };

/// A planned operation on one entry.
struct TransferStep {
    Location src;         ///< the entry; a link itself, not its target
    Location dst;         ///< final path
    bool replace = false; ///< trash an existing entry at `dst`

    /// Set if the entry at `dst` cannot be trashed and the user allowed deleting it permanently: its content when they
    /// were asked.
    std::shared_ptr<const SeenTree> removedForGood;

    bool operator==(const TransferStep &) const = default;
};

/// Size of an entry with its content.
struct TransferSize {
    std::int64_t bytes = 0;
    std::int64_t files = 0; ///< files and links, not folders

    bool operator==(const TransferSize &) const = default;
    TransferSize &operator+=(const TransferSize &other)
    {
        bytes += other.bytes;
        files += other.files;
        return *this;
    }
};

} // namespace brellin

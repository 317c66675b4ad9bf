#pragma once

#include "Base/Location.h"
#include "Disk/SeenTree.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brellin {

enum class TransferKind { Copy, Move };

/// One planned operation.
struct TransferStep {
    Location src;         ///< the entry to transfer, a link itself
    Location dst;         ///< its final place
    bool replace = false; ///< what exists at `dst` goes into the Trash first

    /// Set where the user allowed that the entry at `dst`, for which there is no Trash, is removed for good when it is
    /// replaced: as it was when they were asked.
    std::shared_ptr<const SeenTree> removedForGood;

    bool operator==(const TransferStep &) const = default;
};

/// What an entry holds, with everything in it.
struct TransferSize {
    std::int64_t bytes = 0;
    std::int64_t files = 0; ///< files and links, no folders

    bool operator==(const TransferSize &) const = default;
    TransferSize &operator+=(const TransferSize &other)
    {
        bytes += other.bytes;
        files += other.files;
        return *this;
    }
};

} // namespace brellin

#pragma once

#include "Disk/EntryMark.h"

#include <cstdint>

namespace brellin {

/// Permission bits (with set-id and sticky), owner and group of an entry.
struct EntryRights {
    std::uint32_t mode = 0;
    std::uint32_t owner = 0;
    std::uint32_t group = 0;

    bool operator==(const EntryRights &) const = default;
};

/// What a change of rights needs to know of an entry.
struct ExaminedRights {
    FileAttributes attributes;
    EntryRights rights;
    bool accessList = false; ///< it has an ACL, whose entries the group's bits limit

    bool operator==(const ExaminedRights &) const = default;
};

/// Of the entry itself, never of a link's target.
Result<ExaminedRights> examineRights(const Location &entry);

/// Sets the rights of exactly the entry marked, which is held open meanwhile, unless it is a link or its rights are no
/// longer `before`. Returns its rights afterwards: the system may withhold set-id bits.
Result<EntryRights> setRights(const Location &entry, const EntryMark &mark, const EntryRights &before,
                              const EntryRights &wanted);

} // namespace brellin

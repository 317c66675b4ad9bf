#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <QString>

#include <cstdint>

namespace brellin {

/// What rarely shown columns need of an entry; of a link itself. Fields that are not stored or were not read have their
/// default.
struct EntryDetails {
    static constexpr std::uint32_t nobody = 0xFFFFFFFF;

    Instant created = Instant::min();
    Instant accessed = Instant::min();
    std::uint32_t owner = nobody; ///< user ID
    std::uint32_t mode = 0;       ///< permission bits without the type

    bool operator==(const EntryDetails &) const = default;
};

/// One file call. Has default values if the entry cannot be examined. Also looks up the owner's name, so that ownerName()
/// does not block afterwards.
EntryDetails readDetails(const Location &entry);

/// The user's name, otherwise the number; empty for nobody. Thread-safe; blocks at the first call for an ID.
QString ownerName(std::uint32_t owner);

} // namespace brellin

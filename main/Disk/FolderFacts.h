#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <map>
#include <string>

namespace brellin {

/// Owner, permissions, extended attributes and time of a folder, to make it again after it was removed.
struct FolderFacts {
    std::uint32_t mode = 0; ///< permission bits without the type
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    Instant modified;
    std::map<std::string, std::string> attributes; ///< name and value; those a copy preserves

    bool operator==(const FolderFacts &) const = default;

    /// Fails for anything but a readable folder, also for a link to one.
    static Result<FolderFacts> of(const Location &folder);
    /// Gives them to a folder; ignores what the volume or the user's rights do not allow. Blocking.
    Result<void> giveTo(const Location &folder) const;
};

} // namespace brellin

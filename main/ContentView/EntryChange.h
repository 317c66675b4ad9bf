#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"

#include <functional>

namespace brellin {

/// What became of a rename, or of a new folder (then `from` is empty).
struct EntryChange {
    Location from;
    Location to;
    Result<void> outcome;
};

/// Whether an entry may be made or renamed at this place; empty: everywhere.
using MayChange = std::function<bool(const Location &entry)>;

/// Creates `wanted`, or the first name after it that is free. Blocking.
EntryChange createFolder(const Location &wanted, FileActions &files, const MayChange &mayChange);
EntryChange renameEntry(const Location &from, const Location &to, FileActions &files, const MayChange &mayChange);

} // namespace brellin

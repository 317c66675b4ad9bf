#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"

#include <functional>

namespace brellin {

/// Outcome of a rename, or of creating a folder (`from` is empty then).
struct EntryChange {
    Location from;
    Location to;
    Result<void> outcome;
};

/// Whether an entry may be created or renamed at this path; empty allows all.
using MayChange = std::function<bool(const Location &entry)>;

/// Creates `wanted`, or the next free numbered name; `to` is the name used. Blocking.
EntryChange createFolder(const Location &wanted, FileActions &files, const MayChange &mayChange);
EntryChange renameEntry(const Location &from, const Location &to, FileActions &files, const MayChange &mayChange);

} // namespace brellin

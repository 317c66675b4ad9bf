#pragma once

#include "Disk/FileAttributes.h"

#include <chrono>

namespace brellin {

/// Tolerance for times on volumes that store them in steps of one or two seconds (FAT).
inline constexpr std::chrono::seconds coarseTime{2};

/// When an empty file that keeps a name free is created, seen from the note about it.
enum class ReserveCreated {
    RightAfterNote, ///< within a minute, since the volume may be slow
    AnyTimeAfterNote
};

/// Whether `found` may be the empty file that a program created to keep a name free: a rename without replacing needs one
/// on volumes that cannot refuse to replace. An older or a later one is somebody else's. `noted` is by the volume's clock
/// or ours.
bool mayBeReserve(const FileAttributes &found, Instant noted, ReserveCreated created);

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <vector>

namespace brellin {

/// Says in this program's own folder where something hidden grows, so that what a killed program left is found without a
/// visit to its place. Locked while its owner lives; whoever makes it discards it.
class HiddenNote {
public:
    HiddenNote() = default;
    /// `notes` holds them all. Where none can be made there is none: what is left is then found on the spot only.
    HiddenNote(const Location &place, const Location &notes);

    void discard();

private:
    Location m_file;
    FileLock m_lock;
};

/// The noted places of the dead that something is still at. Notes of places where nothing is any more go; those of volumes
/// that are away stay. Blocking.
std::vector<Location> notedHiddenPlaces(const Location &notes);
/// The notes, or their folder, that cannot be read. They stay. Blocking.
std::vector<UnreadLog> unreadHiddenNotes(const Location &notes);

} // namespace brellin

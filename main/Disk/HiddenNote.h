#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <vector>

namespace brellin {

/// Notes the path of a hidden folder in this program's data, so that leftovers of a killed process are found without
/// visiting the place. Locked while its owner lives; the owner must discard it.
class HiddenNote {
public:
    HiddenNote() = default;
    /// `notes` is the folder of all notes. If no note can be written, leftovers are only found on the spot.
    HiddenNote(const Location &place, const Location &notes);

    void discard();

private:
    Location m_file;
    FileLock m_lock;
};

/// Noted paths of dead processes that still exist. Removes notes whose path is gone; keeps them while the volume is
/// missing. Blocking.
std::vector<Location> notedHiddenPlaces(const Location &notes);
/// Notes, or their folder, that cannot be read; they are kept. Blocking.
std::vector<UnreadLog> unreadHiddenNotes(const Location &notes);

} // namespace brellin

#pragma once

#include "Disk/Trash.h"
#include "History/HistoryStep.h"

namespace brellin {

/// One entry through the history: every step that it went, whatever it was called.
struct EntryTrail {
    struct Step {
        HistoryStep::By by = HistoryStep::By::User;
        QUuid id;
        Instant date;
        HistoryEntry entry;

        bool operator==(const Step &) const = default;
    };
    std::vector<Step> steps;      ///< oldest first; a copy is a step of its original and the first of its own
    std::vector<EntryMark> marks; ///< by which it is known

    bool operator==(const EntryTrail &) const = default;
    /// The last known place.
    const Location &last() const;
};

/// The trails of entries that ever had a name with this in it, in any case; the one with the newest step first.
std::vector<EntryTrail> trailsOf(const std::vector<HistoryStep> &history, const QString &name);

/// Where the entry is now, by its identity: at a place of its trail, beside its last one under another name, or in the
/// Trash. Blocking, as long as these places take.
std::optional<Location> placeNow(const EntryTrail &trail, const Trash &trash);

} // namespace brellin

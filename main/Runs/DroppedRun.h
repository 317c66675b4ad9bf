#pragma once

#include "Runs/JournalRun.h"
#include "System/UserDefaults.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace brellin {

struct StoredKind;

/// A run removed from the history early because the settings file would have become too large. It cannot be undone any
/// more.
struct DroppedRun {
    QUuid run;
    Instant date;
    std::int64_t steps = 0;

    bool operator==(const DroppedRun &) const = default;
    static DroppedRun of(const JournalRun &run)
    {
        return {run.id, run.date, static_cast<std::int64_t>(run.steps.size())};
    }
    static StoredKind kind();
    static std::vector<DroppedRun> read(const UserDefaults &defaults);
    /// Stores these, newest first, in front of the earlier ones; keeps at most `most`.
    static Result<void> note(UserDefaults &defaults, const std::vector<DroppedRun> &dropped, std::size_t most);
};

/// "Aus dem Verlauf gefallen, weil er sonst zu groß würde: …"; empty if there are none.
QString textOf(const std::vector<DroppedRun> &dropped);

} // namespace brellin

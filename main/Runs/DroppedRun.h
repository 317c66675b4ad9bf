#pragma once

#include "Runs/JournalRun.h"
#include "System/UserDefaults.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace brellin {

struct StoredKind;

/// A run that fell out of the history before its time, because the file would have become too large: it cannot be undone
/// any more.
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
    /// Notes these, newest first, in front of the earlier ones, of which `most` are kept.
    static Result<void> note(UserDefaults &defaults, const std::vector<DroppedRun> &dropped, std::size_t most);
};

/// "Aus dem Verlauf gefallen, weil er sonst zu groß würde: …"; empty for none.
QString textOf(const std::vector<DroppedRun> &dropped);

} // namespace brellin

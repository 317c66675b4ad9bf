#pragma once

#include "Records/RecordedStep.h"
#include "Runs/RunHistory.h"

#include <optional>
#include <vector>

namespace brellin {

/// What happened to one entry; the steps of one run of the agent may be of several kinds.
struct HistoryEntry {
    StepKind kind = StepKind::Rename;
    StepEntry entry;

    bool operator==(const HistoryEntry &) const = default;
    /// Where the step left the entry, or undoing it; empty if not known.
    const Location &place() const { return entry.takenBack && !entry.from.empty() ? entry.from : entry.to; }
};

/// A step of the user's or a run of the agent's.
struct HistoryStep {
    enum class By { User, Agent };
    By by = By::User;
    QUuid id; ///< of the step or the run
    Instant date;
    bool takenBack = false;
    std::vector<HistoryEntry> entries;

    bool operator==(const HistoryStep &) const = default;
};

/// Both lists as one, newest first.
std::vector<HistoryStep> historyOf(const std::vector<RecordedStep> &steps, const std::vector<JournalRun> &runs,
                                   const RunHistory &history);

/// Kinds that a filter puts together.
enum class HistoryKind { Copied, Moved, Renamed, Trashed, Made, Unpacked, Permitted };

/// Empty fields let everything through.
struct HistoryFilter {
    std::optional<HistoryKind> kind = {};
    Location folder = {}; ///< from or to somewhere at or below it

    bool operator==(const HistoryFilter &) const = default;
    bool matches(const HistoryStep &step) const;
};

HistoryKind historyKind(StepKind kind);

} // namespace brellin

#pragma once

#include "Base/Result.h"
#include "Runs/DroppedRun.h"
#include "Runs/JournalRun.h"
#include "Runs/StepMarks.h"
#include "System/StoredCondition.h"
#include "System/UserDefaults.h"

#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace brellin {

struct StoredKind;

/// The stored history of runs, newest first, at most thirty, and under separate keys what undo needs for each run: the
/// folders it created and what could not be restored. Every change re-reads the stored lists, so that concurrent
/// processes keep each other's runs.
class RunHistory {
public:
    static constexpr std::size_t longest = 30;

    explicit RunHistory(UserDefaults &defaults) : m_defaults(defaults) {}

    std::vector<JournalRun> runs() const;
    /// What remains to be reported after the undo of a run.
    struct Aftermath {
        std::vector<Location> notRestored; ///< their original paths
        std::vector<std::size_t> left;     ///< indices of these steps in the run; they can be tried again
        QStringList remarks;               ///< on entries that came back changed

        bool operator==(const Aftermath &) const = default;
    };
    /// What the history page shows: the runs, the aftermath of the undone ones, and the runs dropped early.
    struct Shown {
        std::vector<JournalRun> runs;
        std::vector<DroppedRun> dropped;
        std::map<QUuid, Aftermath> aftermath;
        std::optional<StoredCondition> damage; ///< the history could not be read completely
    };
    Shown shown() const;
    /// The same, if these runs are what is stored.
    Shown shownWith(std::vector<JournalRun> runs) const;
    /// The settings keys that shown() reads.
    static const QStringList &shownLists();
    /// Like runs(), but fails if the history exists and cannot be read completely. Use it before discarding anything
    /// that is missing from the history.
    Result<std::vector<JournalRun>> readRuns() const;
    /// Like readRuns(), but leaves out single damaged runs.
    Result<std::vector<JournalRun>> readableRuns() const;
    /// What an undo needs besides the steps.
    struct Traces {
        std::vector<Location> createdFolders; ///< in order of creation
        std::vector<StepMarks> marks;         ///< one per step; empty: unknown
        std::vector<Location> volumes;        ///< mount points of the volumes that hold what the steps left
    };
    struct Added {
        std::vector<JournalRun> runs; ///< as stored now
        std::vector<DroppedRun> dropped;
    };
    /// Adds a run at the front unless it is already known. Runs beyond the thirtieth are dropped silently; runs dropped
    /// earlier, because the file would become too large, are recorded and returned.
    Result<Added> add(const JournalRun &run, const Traces &traces);
    /// Runs dropped early that would still be among the thirty, newest first.
    std::vector<DroppedRun> dropped() const;
    Result<void> markUndone(const QUuid &run, const Aftermath &aftermath);
    /// For a run of an earlier version only what that version stored.
    Traces traces(const QUuid &run) const;
    /// For an undo of an earlier version only the paths.
    Aftermath aftermath(const QUuid &run) const;

    /// Descriptions of the lists stored beside the history: locations under a key, marks and aftermath.
    static StoredKind placesKind(const QString &key);
    static StoredKind marksKind();
    static StoredKind aftermathKind();

private:
    UserDefaults &m_defaults;
};

} // namespace brellin

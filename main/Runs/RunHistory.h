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

/// The stored history of runs, newest first, at most thirty, and what is remembered beside each run under keys of its own:
/// the folders that it created and what its undo could not put back. Every change reads what is stored, so that two
/// programs keep each other's runs.
class RunHistory {
public:
    static constexpr std::size_t longest = 30;

    explicit RunHistory(UserDefaults &defaults) : m_defaults(defaults) {}

    std::vector<JournalRun> runs() const;
    /// What the undo of a run has left to be known.
    struct Aftermath {
        std::vector<Location> notRestored; ///< old paths
        std::vector<std::size_t> left;     ///< the numbers of these steps in the run: they may be tried again
        QStringList remarks;               ///< of what came back other than it went

        bool operator==(const Aftermath &) const = default;
    };
    /// What is shown of it: the runs, and of those that are undone what there is to be known.
    struct Shown {
        std::vector<JournalRun> runs;
        std::map<QUuid, Aftermath> aftermath;
        std::optional<StoredCondition> damage; ///< the history is not all there
    };
    Shown shown() const;
    /// The keys that it comes from.
    static const QStringList &shownLists();
    /// The same, told apart from a history that is there and cannot be read: before anything is thrown away because of what
    /// it does not say.
    Result<std::vector<JournalRun>> readRuns() const;
    /// The same with the runs that can be read where others cannot.
    Result<std::vector<JournalRun>> readableRuns() const;
    /// What an undo needs besides the steps.
    struct Traces {
        std::vector<Location> createdFolders; ///< in the order of their creation
        std::vector<StepMarks> marks;         ///< one for each step; empty: not known
        std::vector<Location> volumes;        ///< the top folders of the volumes that hold what the steps left
    };
    /// Puts a run on top, unless the history knows it already. The oldest fall away: beyond thirty without a word; those that
    /// fall out earlier, because the file would become too large, are noted and given back.
    Result<std::vector<DroppedRun>> add(const JournalRun &run, const Traces &traces);
    /// Those that fell out and would still be among the thirty, newest first.
    std::vector<DroppedRun> dropped() const;
    Result<void> markUndone(const QUuid &run, const Aftermath &aftermath);
    /// Of a run of an earlier version only what that knew.
    Traces traces(const QUuid &run) const;
    /// Of an undo of an earlier version the paths only.
    Aftermath aftermath(const QUuid &run) const;

    /// The lists beside the history: places under a key, and the marks.
    static StoredKind placesKind(const QString &key);
    static StoredKind marksKind();
    static StoredKind aftermathKind();

private:
    UserDefaults &m_defaults;
};

} // namespace brellin

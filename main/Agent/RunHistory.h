#pragma once

#include "Agent/EntryMark.h"
#include "Agent/JournalRun.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <map>
#include <vector>

namespace brellin {

/// The stored history of runs, newest first, at most thirty, and what is remembered beside each run under keys of its own:
/// the folders that it created and what its undo could not put back. Every change reads what is stored, so that two
/// programs keep each other's runs.
class RunHistory {
public:
    static constexpr std::size_t longest = 30;

    explicit RunHistory(UserDefaults &defaults) : m_defaults(defaults) {}

    std::vector<JournalRun> runs() const;
    /// What is shown of it: the runs, and of those that are undone what could not be put back.
    struct Shown {
        std::vector<JournalRun> runs;
        std::map<QUuid, std::vector<Location>> notRestored;
    };
    Shown shown() const;
    /// The same, told apart from a history that is there and cannot be read: before anything is thrown away because of what
    /// it does not say.
    Result<std::vector<JournalRun>> readRuns() const;
    /// What an undo needs besides the steps.
    struct Traces {
        std::vector<Location> createdFolders; ///< in the order of their creation
        std::vector<StepMarks> marks;         ///< one for each step; empty: not known
        std::vector<Location> volumes;        ///< the top folders of the volumes that hold what the steps left
    };
    /// Puts a run on top, unless the history knows it already. The oldest fall away.
    Result<void> add(const JournalRun &run, const Traces &traces);
    Result<void> markUndone(const QUuid &run, const std::vector<Location> &notRestored);
    /// Of a run of an earlier version only what that knew.
    Traces traces(const QUuid &run) const;
    /// What the undo of a run could not put back: old paths.
    std::vector<Location> notRestored(const QUuid &run) const;

private:
    UserDefaults &m_defaults;
};

} // namespace brellin

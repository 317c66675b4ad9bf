#pragma once

#include "Agent/JournalRun.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

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
    /// The same, told apart from a history that is there and cannot be read: before anything is thrown away because of what
    /// it does not say.
    Result<std::vector<JournalRun>> readRuns() const;
    /// Puts a run on top, unless the history knows it already. The oldest fall away.
    Result<void> add(const JournalRun &run, const std::vector<Location> &createdFolders);
    Result<void> markUndone(const QUuid &run, const std::vector<Location> &notRestored);
    /// The folders that a run created, in the order of their creation.
    std::vector<Location> createdFolders(const QUuid &run) const;
    /// What the undo of a run could not put back: old paths.
    std::vector<Location> notRestored(const QUuid &run) const;

private:
    UserDefaults &m_defaults;
};

} // namespace brellin

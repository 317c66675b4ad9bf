#pragma once

#include "Runs/RunJournal.h"

#include <algorithm>
#include <vector>

namespace brellin {

/// Connects the operations of one step with the journal, and collects the folders created for the undo.
class StepLog {
public:
    StepLog(RunJournal &journal, std::vector<Location> &createdFolders, std::size_t step)
        : m_journal(journal)
        , m_created(createdFolders)
        , m_step(step)
    {
    }

    /// Before a step that may take long: the results of those before it are written first.
    void beginningAlone() { (void)m_journal.writeRenamed(); }
    Result<void> creatingFolder(const Location &folder)
    {
        TRY(m_journal.folder(folder));
        if (std::ranges::find(m_created, folder) == m_created.end())
            m_created.push_back(folder);
        return {};
    }
    /// The folder was created by someone else, or has been removed again.
    void folderNotOurs(const Location &folder) { std::erase(m_created, folder); }
    Result<void> copying(const Location &temporary) { return m_journal.copying(m_step, temporary); }
    /// Before a rename that reserves its target name with an empty file.
    Result<void> reserving(const NameReserve &reserve) { return m_journal.reserving(m_step, reserve); }
    Result<void> copied(const EntryMark &copy) { return m_journal.copied(m_step, copy); }

private:
    RunJournal &m_journal;
    std::vector<Location> &m_created;
    std::size_t m_step;
};

} // namespace brellin

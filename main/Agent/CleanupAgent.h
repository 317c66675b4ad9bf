#pragma once

#include "Agent/AgentProposal.h"
#include "Agent/AgentServices.h"
#include "Agent/CleanupRule.h"
#include "Agent/Execution.h"
#include "Agent/FolderProfile.h"
#include "Agent/JournalRun.h"
#include "Agent/Scan.h"
#include "Agent/UndoRun.h"
#include "Base/Job.h"
#include "Base/Published.h"

#include <set>
#include <vector>

namespace brellin {

/// The cleanup agent: keeps the user's rules, looks what they would do, does what was ticked, and takes it back.
///
/// Lives on the main thread. One operation at a time: while `running`, the others do nothing. Each ends with `finished`.
class CleanupAgent : public Model {
public:
    Published<std::vector<CleanupRule>> rules;
    Published<std::vector<Location>> duplicateFolders;
    Published<std::vector<FolderProfile>> profiles;
    Published<std::optional<FolderProfile>> pendingProfile; ///< awaits the user's confirmation
    Published<int> intervalHours;                           ///< 0: only by hand
    Published<bool> autoDuplicates;
    Published<std::vector<AgentProposal>> proposals;
    Published<std::set<QUuid>> chosen;          ///< the ticked proposals
    Published<std::vector<JournalRun>> history; ///< newest first
    Published<bool> running;
    Published<QString> status; ///< what is being done, or what came of the last thing
    Published<int> newSinceViewed;
    Published<std::optional<Instant>> lastRun;
    Published<double> progress; ///< 0 … 1 while running
    Published<QString> detail;  ///< the file at hand

    /// Loads what is stored and brings it up to date. The services outlive the agent and its work.
    explicit CleanupAgent(const AgentServices &services);
    ~CleanupAgent() override;

    /// Takes over what a killed program left behind.
    void recover();

    /// What a scan may do: carry out what is automatic and remember that it was there, or nothing but propose.
    enum class ScanPurpose { ActAndPropose, ProposeOnly };
    void scan(ScanPurpose purpose = ScanPurpose::ActAndPropose);

    /// Carries out the ticked proposals, in list order, as one run.
    void executeChosen();
    /// Removes proposals from the list; nothing happens to their files.
    void discard(const std::set<QUuid> &ids);
    void choose(const std::set<QUuid> &ids);
    /// Undoes a run of the history that is not undone yet.
    void undo(const QUuid &run);
    /// Ends the operation at work as soon as it can stop; it still finishes.
    void cancel();

    /// What the operations leave for whoever started them.
    const ScanFindings &findings() const { return m_findings; }
    const std::optional<ExecutionOutcome> &lastExecution() const { return m_execution; }
    const std::optional<UndoOutcome> &lastUndo() const { return m_undo; }
    /// Why the last operation was not begun at all, or could not be finished.
    const std::optional<Failure> &lastFailure() const { return m_failure; }

    /// Called once when an operation has ended and everything is published.
    void whenFinished(std::function<void()> finished) { m_finished = std::move(finished); }

    /// Replaces the stored rules by what `change` makes of them.
    Result<void> updateRules(const std::function<std::vector<CleanupRule>(std::vector<CleanupRule>)> &change);
    Result<void> addExampleRules();
    void setIntervalHours(int hours);
    void setAutoDuplicates(bool on);
    void markViewed();
    /// Notes that the user's folders have just been checked.
    void noteChecked();

private:
    void load();
    void upgradeRules();
    bool begin(const QString &what);
    void end(const QString &what);
    void watch(const JobControl &control);
    void scanned(ScanPurpose purpose, Result<ScanFindings> found);
    void finishScan(Result<ExecutionOutcome> automatic);
    void showProposals(std::vector<AgentProposal> list);
    void discardFromList(const std::set<QUuid> &ids);
    void executed(Result<ExecutionOutcome> result);
    void undone(Result<UndoOutcome> result);
    void reloadHistory();
    void setNewSinceViewed(int count);

    AgentServices m_services;
    ScanFindings m_findings;
    std::optional<ExecutionOutcome> m_execution;
    std::optional<UndoOutcome> m_undo;
    std::optional<Failure> m_failure;
    std::function<void()> m_finished;
    QThreadPool m_pool;
    Job<Result<ScanFindings>> m_scan;
    Job<Result<ExecutionOutcome>> m_executing;
    Job<Result<UndoOutcome>> m_undoing;
};

} // namespace brellin

#pragma once

#include "Agent/AgentServices.h"
#include "Agent/ListedProposals.h"
#include "Agent/OperationEnd.h"
#include "Agent/ReviewReport.h"
#include "Agent/Schedule.h"
#include "Agent/UserLists.h"
#include "Base/Job.h"
#include "Base/Published.h"
#include "Features/EntryMove.h"
#include "Runs/AgentError.h"
#include "Runs/JournalRun.h"
#include "Runs/RunHistory.h"

#include <map>
#include <set>
#include <vector>

namespace brellin {

struct StoredKind;

/// The cleanup agent: holds the user's rules, finds what they would do, executes approved proposals and undoes runs.
///
/// Lives on the main thread. One operation at a time: while `running`, starting another one fails. An operation hands
/// what it found to its `Done` callback. The agent's timer starts with start().
class CleanupAgent : public Model<CleanupAgent> {
    // First, since they hold public properties.
    UserLists m_lists;
    ListedProposals m_listed;

public:
    brellin::Published<std::vector<CleanupRule>> &rules = m_lists.rules;
    brellin::Published<std::vector<Location>> &duplicateFolders = m_lists.duplicateFolders;
    brellin::Published<std::vector<FolderProfile>> &profiles = m_lists.profiles;
    Published<std::optional<FolderProfile>> pendingProfile; ///< awaits the user's confirmation
    Published<int> intervalHours;                           ///< 0: manual scans only
    Published<bool> autoDuplicates;
    brellin::Published<std::vector<AgentProposal>> &proposals = m_listed.proposals;
    brellin::Published<std::set<QUuid>> &chosen = m_listed.chosen; ///< ids of the ticked proposals
    /// The proposals by kind, with counts and sizes.
    brellin::Published<std::vector<ProposalGroup>> &groups = m_listed.groups;
    Published<bool> leftNothing;                ///< a scan, analysis or run since the start has left nothing to propose
    Published<std::vector<JournalRun>> history; ///< newest first
    /// What became of the entries of this agent's last run or undo; published before it ends, then empty again.
    Published<std::vector<EntryMove>> moves;
    Published<std::vector<DroppedRun>> droppedRuns; ///< gone from the history early, newest first
    Published<bool> running;
    Published<QString> status; ///< the current step, or the result of the last operation
    Published<int> newSinceViewed;
    Published<std::optional<Instant>> lastRun;
    Published<double> progress; ///< 0 … 1 while running
    Published<QString> detail;  ///< the current folder or file
    /// Why proposals could not be executed.
    brellin::Published<std::map<QUuid, QString>> &failures = m_listed.failures;
    Published<std::map<QUuid, RunHistory::Aftermath>> aftermath; ///< what remains to be reported about undone runs
    Published<std::map<QUuid, QString>> notUndone;               ///< why the last undo of these runs failed
    Published<std::set<QUuid>> interruptedRuns;                  ///< interrupted runs that were recovered
    /// How many proposals bringBack() would bring back.
    brellin::Published<std::size_t> &discarded = m_listed.discarded;
    /// The run that the last operation executed, until it is undone or another operation begins.
    Published<std::optional<QUuid>> executedRun;
    /// Findings that must not be proposed again.
    brellin::Published<std::vector<NeverProposed>> &never = m_lists.never;
    Published<std::vector<StoredCondition>> damaged; ///< stored lists that cannot be read completely

    /// When to read the stored lists: in the constructor, or on a worker by start(), since long lists would delay the
    /// window.
    enum class Loading { AtOnce, WithStart };
    /// Loads and upgrades the stored data. The services must outlive the agent and its workers.
    explicit CleanupAgent(const AgentServices &services, Loading loading = Loading::AtOnce);
    ~CleanupAgent() override;

    /// Recovers interrupted runs on a worker, then starts the timer and, if one is due, a scan.
    void start();
    /// Recovers interrupted runs synchronously, for programs without a window.
    void recover();
    /// Restarts the timer after a change of the interval, and starts a scan if one is due.
    void schedule();
    /// Called by the timer: starts a scan if one is due and nobody is using the agent, and calls the receipt callback.
    void tick();
    /// Sets a callback for each tick, for the daily search for receipts.
    void onReceiptTick(std::function<void()> ask) { m_receiptTick = std::move(ask); }

    /// Called once with what an operation found or why it failed, after everything is published; also if the operation
    /// cannot begin. Not called any more once the agent is destroyed.
    template <class Found>
    using Done = std::function<void(Result<Found>)>;

    /// What a scan may do: execute automatic proposals and record the time of the scan, or only propose. DuplicatesOnly
    /// is the purpose of `searchDuplicates`.
    enum class ScanPurpose { ActAndPropose, ProposeOnly, DuplicatesOnly };
    using Tick = ListedProposals::Tick;
    enum class Search { Rules, RulesAndDuplicates };
    void scan(Search search, ScanPurpose purpose = ScanPurpose::ActAndPropose, const Done<ScanFindings> &done = {});
    /// Proposes the duplicates in these folders only.
    void searchDuplicates(const std::vector<Location> &folders, const Done<ScanFindings> &done = {});

    /// Analyses one folder and replaces the proposals. For a software project without a profile sets `pendingProfile`.
    void analyze(const Location &folder, const Done<AnalysisFindings> &done = {});
    /// Stores the edited pending profile and repeats the analysis.
    void confirmPendingProfile(const FolderProfile &profile, const Done<AnalysisFindings> &done = {});
    /// Ends the analysis without proposals.
    void cancelPendingProfile();

    /// Executes the ticked proposals as one run, in the order of the list.
    void executeChosen(const Done<ExecutionOutcome> &done = {});
    /// Removes proposals from the list; their files stay as they are. `hidden`: how many of them the user does not see,
    /// for the status.
    void discard(const std::set<QUuid> &ids, std::size_t hidden = 0);
    /// Brings back the proposals discarded last, unless the list has been replaced.
    void bringBack();
    /// Ticks of the list, see ListedProposals.
    void choose(const std::set<QUuid> &ids) { m_listed.choose(ids); }
    void setChosen(const QUuid &proposal, Tick tick) { m_listed.setChosen(proposal, tick); }
    void setGroupChosen(AgentProposal::Kind kind, Tick tick) { m_listed.setGroupChosen(kind, tick); }
    /// Swaps a pair of duplicates: keeps the file that was to go, and trashes the other. On failure the status gives
    /// the reason too.
    Result<void> keepInstead(const QUuid &proposal);
    /// Removes proposals and does not make them again until `proposeAgain`.
    void neverPropose(const std::set<QUuid> &ids);
    void proposeAgain(const NeverProposed &one);
    /// Undoes a run of the history; for a run already undone, retries what was not restored.
    void undo(const QUuid &run, const Done<UndoOutcome> &done = {});
    /// Cancels the current operation. It still finishes, as soon as it can stop.
    void cancel();

    /// Writes the report on the proposals for `folder`; nullopt: on those of the rules. Blocking.
    Result<ReviewReport> writeReport(const std::optional<Location> &folder) const;
    /// Writes the report on a worker, copies the request to the clipboard and opens the desktop's assistant; `status`
    /// gives the result. Ignored while another hand-over is in progress. Both ports must outlive the agent.
    void handOverToClaude(const std::optional<Location> &folder, Workspace &workspace, Pasteboard &pasteboard);

    /// Tells whether a view of the agent is visible; while one is, no proposal counts as new. Ends with the view's
    /// destruction.
    void setViewVisible(const QObject &view, bool visible);
    /// Tells whether the user is looking at a list or sheet in a view; the timer then starts no scan. Ends with the
    /// view's destruction.
    void setAttended(const QObject &view, bool attended);

    /// The findings of the last scan, without what was left out since. Their proposals are in the list.
    const ScanFindings &findings() const { return m_findings; }
    /// Removes proposals from the result of the last scan or analysis, and from its totals.
    void leaveOut(const std::set<QUuid> &ids);
    /// The analysed folder that the proposals are about; nullopt: they come from a scan.
    const std::optional<Location> &listedFolder() const { return m_listedFolder; }
    /// Why the last operation failed or was incomplete; belongs to `status`.
    const std::optional<Failure> &lastFailure() const { return m_failure; }
    /// The folders that the last operation, a scan or an analysis, could not search, by path; `status` does not mention
    /// them. Empty after any other operation.
    const std::vector<Location> &notSearched() const { return m_notSearched; }

    /// Re-reads the stored data on a worker after the current operation; another process may have changed it. The
    /// history, which is long, is read only if `lists` contains it.
    void reload(const std::set<QString> &lists);
    /// Restores the last good version of a damaged list. The damaged one is kept aside.
    Result<void> restoreList(const QString &list);
    /// Resets a damaged list to its default. The damaged one is kept aside.
    Result<void> beginListAnew(const QString &list);

    /// Changes of the user's lists, see UserLists.
    Result<void> updateRules(const UserLists::ChangeRules &change) { return m_lists.updateRules(change); }
    Result<void> updateProfiles(const UserLists::ChangeProfiles &change) { return m_lists.updateProfiles(change); }
    Result<void> addExampleRules() { return m_lists.addExampleRules(); }
    Result<void> saveRule(const CleanupRule &rule) { return m_lists.saveRule(rule); }
    Result<void> moveRule(const QUuid &rule, std::size_t place) { return m_lists.moveRule(rule, place); }
    Result<QUuid> duplicateRule(const QUuid &rule) { return m_lists.duplicateRule(rule); }
    Result<RemovedRule> removeRule(const QUuid &rule) { return m_lists.removeRule(rule); }
    Result<void> restoreRule(const RemovedRule &removed) { return m_lists.restoreRule(removed); }
    Result<void> saveProfile(const FolderProfile &profile) { return m_lists.saveProfile(profile); }
    Result<void> removeProfile(const QUuid &profile) { return m_lists.removeProfile(profile); }
    Result<void> setDuplicateFolders(const std::vector<Location> &folders)
    {
        return m_lists.setDuplicateFolders(folders);
    }
    /// If the value cannot be stored it does not change, and the status says so too.
    Result<void> setIntervalHours(int hours);
    Result<void> setAutoDuplicates(bool on);
    /// Records that the user's folders have just been checked.
    Result<void> noteChecked();

private:
    /// The result of a worker, with the history as of then, since a long one takes time to read.
    template <class Outcome>
    struct Worked {
        Result<Outcome> outcome;
        RunHistory::Shown history;
        ChangedProposals followed = {}; ///< changes to the listed proposals
        std::set<QUuid> unwanted = {};  ///< listed proposals that must never be proposed
        std::vector<EntryMove> moves = {};
    };
    /// A check of the user's folders that was recorded, or could not be.
    struct Check {
        Instant time;
        Result<void> stored;
    };
    static Check storeCheck(const AgentServices &services);
    Result<void> takeCheck(const Check &check);
    /// The result of a scan's second phase: the remaining proposals, and how many of them are new.
    struct ScanEnd {
        Result<ExecutionOutcome> automatic;
        RunHistory::Shown history;
        std::vector<AgentProposal> left;
        int added = 0;
        std::optional<Check> noted = {}; ///< nullopt: cancelled
        ChangedProposals followed = {};  ///< changes to the previous list, which stays if the scan is cancelled
    };

    static ScanEnd carryOut(const AgentServices &services, std::vector<AgentProposal> found,
                            const std::vector<AgentProposal> &listed, JobControl &control);
    /// The stored data, read together.
    struct Stored {
        AgentLists lists;
        std::optional<RunHistory::Shown> history; ///< nullopt: not read
        std::vector<QUuid> interrupted;
    };
    static Stored readStored(const AgentServices &services, const std::set<QString> &lists);
    static void upgradeStored(const AgentServices &services);
    static std::vector<QUuid> recoverStored(const AgentServices &services);
    void takeStored(Stored stored);
    void takeIfNew(Stored stored, const std::set<QString> &lists, int before);
    void loadPlain();
    /// Counts changes to stored data made by this object: what was read before one of them may be out of date.
    int changes() const { return m_lists.changes() + m_settingsChanges; }
    void takeLists(AgentLists lists);
    void readAfresh(std::function<void()> then);
    Result<void> settle(const QString &list, const std::function<Result<void>(const StoredKind &)> &how);
    static Stored takeOver(const AgentServices &services);
    void publishHistory(RunHistory::Shown shown);
    void publishMoves(std::vector<EntryMove> made);
    bool begin(const QString &what);
    template <class Found>
    bool begin(const QString &what, const Done<Found> &done);
    void end(const QString &what, OperationEnd how);
    void fail(const Failure &why);
    void watch(const JobControl &control);
    /// Who started a scan.
    enum class Cause { User, Schedule };
    void readForScan(Search search, ScanPurpose purpose, Cause cause);
    void scanIfDue();
    void reloadDamaged();
    Result<void> setPlain(const QString &key, const QVariant &value);
    void startScan(const ScanRequest &request, ScanPurpose purpose);
    void scanned(ScanPurpose purpose, Result<ScanFindings> found);
    void finishScan(ScanEnd scan);
    void endCancelledScan(const ScanEnd &scan);
    void noteListed(ScanPurpose purpose);
    void startAnalysis();
    AnalysisRequest analysisRequest(const Location &folder) const;
    void analyzed(Result<AnalysisFindings> found);
    void showProposals(std::vector<AgentProposal> list);
    void dropProtected();
    void startExecution(const std::shared_ptr<const std::set<QUuid>> &ticked);
    void executed(Worked<ExecutionOutcome> worked);
    QString noteNotStored(const ExecutionOutcome &outcome);
    void undone(const QUuid &run, Worked<UndoOutcome> worked);
    void noteNotUndone(const QUuid &run, const QString &why);
    ReviewSubject reviewSubject(const std::optional<Location> &folder) const;
    void openReport(const ReviewReport &report, Workspace &workspace);
    void setNewSinceViewed(int count);
    void knowView(const QObject &view);

    AgentServices m_services;
    ScanFindings m_findings;
    std::optional<AnalysisFindings> m_analysis;
    std::optional<Failure> m_failure;
    std::vector<Location> m_notSearched;
    std::optional<Location> m_analysedFolder; ///< awaits confirmation of its profile
    std::optional<Location> m_listedFolder;
    std::function<void(OperationEnd)> m_ended; ///< of the current operation
    std::function<void()> m_receiptTick;
    std::set<const QObject *> m_views; ///< views whose destruction is observed
    std::set<const QObject *> m_visibleViews;
    std::set<const QObject *> m_attendedViews;
    bool m_cancelled = false;         ///< whether the user cancelled the current operation
    bool m_duplicatesOnly = false;    ///< the last scan searched for duplicates only
    std::optional<Instant> m_checked; ///< time of the last check, if it could not be stored
    int m_settingsChanges = 0;        ///< counts changes to plain settings made by this object
    std::set<QString> m_toRead;       ///< requested while an operation was running
    Schedule m_schedule;
    const std::shared_ptr<QThreadPool> m_threads;
    QThreadPool &m_pool = *m_threads;
    Job<Stored> m_recovering;
    Job<AgentLists> m_reading;
    Job<Stored> m_reloading;
    Job<Result<ScanFindings>> m_scan;
    Job<Result<AnalysisFindings>> m_analyzing;
    Job<ScanEnd> m_finishing;
    Job<Worked<ExecutionOutcome>> m_executing;
    Job<Worked<UndoOutcome>> m_undoing;
    Job<Result<ReviewReport>> m_reporting;
    Job<QString> m_handingOver;
    std::unique_ptr<Job<std::set<QUuid>>> m_dropping;
};

template <class Found>
bool CleanupAgent::begin(const QString &what, const Done<Found> &done)
{
    if (!begin(what)) {
        if (done)
            done(failure(AgentError::alreadyWorking()));
        return false;
    }
    if (done)
        m_ended = [done](OperationEnd how) { done(resultOf<Found>(std::move(how))); };
    return true;
}

} // namespace brellin

#pragma once

#include "Agent/AgentLists.h"
#include "Agent/AgentServices.h"
#include "Agent/Analysis/FolderAnalysis.h"
#include "Agent/Duplicates/FollowedKept.h"
#include "Agent/ProposalGroups.h"
#include "Agent/ProposalMemory.h"
#include "Agent/ReviewReport.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleList.h"
#include "Agent/Scan.h"
#include "Agent/Schedule.h"
#include "Base/Job.h"
#include "Base/Published.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"
#include "Runs/Execution.h"
#include "Runs/JournalRun.h"
#include "Runs/RunHistory.h"
#include "Runs/UndoRun.h"

#include <map>
#include <set>
#include <vector>

namespace brellin {

struct StoredKind;

/// The cleanup agent: keeps the user's rules, looks what they would do, does what was ticked, and takes it back.
///
/// Lives on the main thread. One operation at a time: while `running`, the others do nothing. Each ends with a call of
/// what `whenFinished` was given. The agent's own timer runs once `start` was called.
class CleanupAgent : public Model<CleanupAgent> {
public:
    Published<std::vector<CleanupRule>> rules;
    Published<std::vector<Location>> duplicateFolders;
    Published<std::vector<FolderProfile>> profiles;
    Published<std::optional<FolderProfile>> pendingProfile; ///< awaits the user's confirmation
    Published<int> intervalHours;                           ///< 0: only by hand
    Published<bool> autoDuplicates;
    Published<std::vector<AgentProposal>> proposals;
    Published<std::set<QUuid>> chosen;            ///< the ticked proposals
    Published<std::vector<ProposalGroup>> groups; ///< the proposals by what happens, with counts and sizes
    Published<bool> leftNothing;                ///< a scan, analysis or run of this sitting has left nothing to propose
    Published<std::vector<JournalRun>> history; ///< newest first
    Published<bool> running;
    Published<QString> status; ///< what is being done, or what came of the last thing
    Published<int> newSinceViewed;
    Published<std::optional<Instant>> lastRun;
    Published<double> progress;                                  ///< 0 … 1 while running
    Published<QString> detail;                                   ///< the folder or file at hand
    Published<std::map<QUuid, QString>> failures;                ///< proposals that could not be carried out, and why
    Published<std::map<QUuid, RunHistory::Aftermath>> aftermath; ///< undone runs: what there is to be known of it
    Published<std::map<QUuid, QString>> notUndone;               ///< runs that could not be undone just now, and why
    Published<std::set<QUuid>> interruptedRuns;                  ///< runs that were cut short and taken over
    Published<std::vector<NeverProposed>> never;                 ///< findings not to be offered again
    Published<std::vector<StoredCondition>> damaged;             ///< stored lists that cannot be read whole

    /// When the stored lists are read: at once, or by `start` on a worker (long ones take a while, and a window is to open).
    enum class Loading { AtOnce, WithStart };
    /// Loads what is stored and brings it up to date. The services outlive the agent and its work.
    explicit CleanupAgent(const AgentServices &services, Loading loading = Loading::AtOnce);
    ~CleanupAgent() override;

    /// Takes over what a killed program left behind, on a worker; then arms the timer and starts a scan that is due.
    void start();
    /// The same taking over, at once: for a program without a window.
    void recover();
    /// Arms the timer anew, after a change of the interval, and starts a scan that is due.
    void schedule();
    /// What the timer does: a scan if one is due and nobody is at work with the agent, and the daily look for receipts.
    void tick();
    /// Asked at each tick; for whoever looks for receipts.
    void onReceiptTick(std::function<void()> ask) { m_receiptTick = std::move(ask); }

    /// What a scan may do: carry out what is automatic and remember that it was there, or nothing but propose (the last one
    /// is what `searchDuplicates` does).
    enum class ScanPurpose { ActAndPropose, ProposeOnly, DuplicatesOnly };
    enum class Tick { Off, On };
    enum class Search { Rules, RulesAndDuplicates };
    void scan(Search search, ScanPurpose purpose = ScanPurpose::ActAndPropose);
    /// Proposes the duplicates in these folders and nothing else.
    void searchDuplicates(const std::vector<Location> &folders);

    /// Analyses one folder and replaces the proposals. A software project without a profile ends with `pendingProfile`.
    void analyze(const Location &folder);
    /// Stores the pending profile as the user edited it and goes on with the analysis …
    void confirmPendingProfile(const FolderProfile &profile);
    /// … or ends it without proposals.
    void cancelPendingProfile();

    /// Carries out the ticked proposals, in list order, as one run.
    void executeChosen();
    /// Removes proposals from the list; nothing happens to their files.
    void discard(const std::set<QUuid> &ids);
    void choose(const std::set<QUuid> &ids);
    /// Ticks or unticks one proposal …
    void setChosen(const QUuid &proposal, Tick tick);
    /// … or all that are done the same way.
    void setGroupChosen(AgentProposal::Kind kind, Tick tick);
    /// Turns a pair of duplicates round: the file that was to go is kept, the kept one goes instead. Where that cannot be, the
    /// status says why as well.
    Result<void> keepInstead(const QUuid &proposal);
    /// Removes proposals and does not make them again, until the user takes that back.
    void neverPropose(const std::set<QUuid> &ids);
    void proposeAgain(const NeverProposed &one);
    /// Undoes a run of the history or, where it is undone, tries again what was not restored.
    void undo(const QUuid &run);
    /// Ends the operation at work as soon as it can stop; it still finishes.
    void cancel();

    /// Writes the report of the proposals for `folder` (none: those of the rules).
    Result<ReviewReport> writeReport(const std::optional<Location> &folder) const;
    /// Writes it on a worker, puts the request on the clipboard and hands it over to the desktop's assistant; when that is
    /// done the status says how it went. One at a time. Both ports outlive the agent.
    void handOverToClaude(const std::optional<Location> &folder, Workspace &workspace, Pasteboard &pasteboard);

    /// Some view of the agent is open: what it shows is not new. Ends with the view.
    void setViewVisible(const QObject &view, bool visible);
    /// A list or a sheet is being looked at in some view: the timer does not pull it away. Ends with the view.
    void setAttended(const QObject &view, bool attended);

    /// What the operations leave for whoever started them.
    const ScanFindings &findings() const { return m_findings; }
    /// Leaves sources out of the proposals just found, and of what they are summed up as.
    void leaveOut(const std::set<QUuid> &ids);
    const std::optional<AnalysisFindings> &analysis() const { return m_analysis; }
    /// The folder whose analysis has found what is listed; none: the rules and the search for duplicates have.
    const std::optional<Location> &listedFolder() const { return m_listedFolder; }
    const std::optional<ExecutionOutcome> &lastExecution() const { return m_execution; }
    const std::optional<UndoOutcome> &lastUndo() const { return m_undo; }
    /// Why the last operation was not begun at all, or could not be finished.
    const std::optional<Failure> &lastFailure() const { return m_failure; }
    /// Called once when an operation has ended and everything is published.
    void whenFinished(std::function<void()> finished) { m_finished = std::move(finished); }

    /// Reads again which of these lists it knows, off the main thread: another program may have changed them. After the
    /// operation at work. The history is long and is read only where it is among them.
    void reload(const std::set<QString> &lists);
    /// Puts the last good version of a damaged list in its place …
    Result<void> restoreList(const QString &list);
    /// … or begins it anew. Either way the damaged one is kept aside.
    Result<void> beginListAnew(const QString &list);

    /// Replaces the stored rules (profiles) by what `change` makes of them.
    Result<void> updateRules(const std::function<std::vector<CleanupRule>(std::vector<CleanupRule>)> &change);
    Result<void> updateProfiles(const std::function<std::vector<FolderProfile>(std::vector<FolderProfile>)> &change);
    Result<void> addExampleRules();
    /// Replaces the rule with this id; a new one becomes the last.
    Result<void> saveRule(const CleanupRule &rule);
    /// Puts a rule at this place of the list (0: first); places beyond the end mean the last one.
    Result<void> moveRule(const QUuid &rule, std::size_t place);
    /// Puts a copy behind a rule, switched off, and gives its id.
    Result<QUuid> duplicateRule(const QUuid &rule);
    /// Takes a rule out of the list, and gives what puts it back.
    Result<RemovedRule> removeRule(const QUuid &rule);
    Result<void> restoreRule(const RemovedRule &removed);
    /// Replaces the profile with this id, or of this root; a new one becomes the last.
    Result<void> saveProfile(const FolderProfile &profile);
    Result<void> removeProfile(const QUuid &profile);
    Result<void> setDuplicateFolders(const std::vector<Location> &folders);
    /// What cannot be stored does not happen; the status says so as well.
    Result<void> setIntervalHours(int hours);
    Result<void> setAutoDuplicates(bool on);
    /// Notes that the user's folders have just been checked.
    void noteChecked();

private:
    /// What a worker brings back: what it came to, and the history as it stands then (long ones take a while to read).
    template <class Outcome>
    struct Worked {
        Result<Outcome> outcome;
        RunHistory::Shown history;
        ChangedProposals followed = {}; ///< of the list
        std::set<QUuid> unwanted = {};  ///< of the list: never to be proposed
    };
    /// … and from the end of a scan what is left to be asked, with the number of those that are new.
    struct ScanEnd {
        Result<ExecutionOutcome> automatic;
        RunHistory::Shown history;
        std::vector<AgentProposal> left;
        int added = 0;
        ChangedProposals followed = {}; ///< of the list from before, which stays when the scan is cancelled
    };

    static ScanEnd carryOut(const AgentServices &services, std::vector<AgentProposal> found,
                            const std::vector<AgentProposal> &listed, JobControl &control);
    /// What is stored, read together.
    struct Stored {
        AgentLists lists;
        std::optional<RunHistory::Shown> history; ///< none: not read
        std::vector<QUuid> interrupted;
    };
    static Stored readStored(const AgentServices &services, const std::set<QString> &lists);
    static void upgradeStored(const AgentServices &services);
    static std::vector<QUuid> recoverStored(const AgentServices &services);
    void takeStored(Stored stored);
    void takeIfNew(Stored stored, const std::set<QString> &lists, int changes);
    void loadPlain();
    void takeLists(AgentLists lists);
    void readAfresh(std::function<void()> then);
    Result<void> settle(const QString &list, const std::function<Result<void>(const StoredKind &)> &how);
    static Stored takeOver(const AgentServices &services);
    void publishHistory(RunHistory::Shown shown);
    bool begin(const QString &what);
    void end(const QString &what);
    void fail(const Failure &why);
    void watch(const JobControl &control);
    /// Who wants a scan.
    enum class Cause { User, Schedule };
    void beginScan(Search search, ScanPurpose purpose, Cause cause);
    void scanIfDue();
    void reloadDamaged();
    Result<void> setPlain(const QString &key, const QVariant &value);
    void startScan(const ScanRequest &request, ScanPurpose purpose);
    void scanned(ScanPurpose purpose, Result<ScanFindings> found);
    void finishScan(ScanEnd scan);
    void endCancelledScan(const ScanEnd &scan);
    void noteListed(ScanPurpose purpose);
    void follow(const ChangedProposals &followed);
    void startAnalysis();
    AnalysisRequest analysisRequest(const Location &folder) const;
    void analyzed(Result<AnalysisFindings> found);
    void showProposals(std::vector<AgentProposal> list);
    void publishList(std::vector<AgentProposal> list, std::set<QUuid> ticked);
    Result<void> turnRound(const QUuid &proposal);
    void removeFromList(const std::set<QUuid> &ids);
    void dropProtected();
    void startExecution(const std::set<QUuid> &ticked);
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
    std::optional<ExecutionOutcome> m_execution;
    std::optional<UndoOutcome> m_undo;
    std::optional<Failure> m_failure;
    std::optional<Location> m_analysedFolder; ///< waits for its profile
    std::optional<Location> m_listedFolder;
    std::function<void()> m_finished;
    std::function<void()> m_receiptTick;
    std::set<const QObject *> m_views; ///< that have said something of themselves
    std::set<const QObject *> m_visibleViews;
    std::set<const QObject *> m_attendedViews;
    bool m_cancelled = false;         ///< the operation at work, by the user
    bool m_duplicatesOnly = false;    ///< the last scan looked for nothing else
    std::optional<Instant> m_checked; ///< the last check, where that could not be stored
    int m_changes = 0;                ///< of what is stored, made here
    std::set<QString> m_toRead;       ///< asked for while an operation was at work
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

} // namespace brellin

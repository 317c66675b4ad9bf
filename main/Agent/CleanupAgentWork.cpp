#include "Agent/CleanupAgent.h"

#include "Agent/Model/AiSorting.h"
#include "Agent/NeverSet.h"
#include "Agent/RunMoves.h"
#include "Base/German.h"
#include "Runs/RunKeys.h"

#include <algorithm>

/// The agent's operations: analyses, runs, undos, and how each begins and ends.
namespace brellin {

namespace {

QString counting(std::size_t count)
{
    return german().toString(static_cast<qulonglong>(count));
}

/// Requires a complete history: files put somewhere by a lost run would be proposed for moving again.
Result<AnalysisFindings> analyzeKnowing(const AgentServices &services, AnalysisRequest request,
                                        const std::vector<NeverProposed> &never, JobControl &control)
{
    RunHistory::Shown history = RunHistory(services.defaults).shown();
    if (history.damage) {
        Failure why = history.damage->failure();
        why.message += QStringLiteral(" Bis das entschieden ist, prüft der Aufräum-Agent keinen Ordner.");
        return failure(std::move(why));
    }
    request.history = std::move(history.runs);
    AnalysisFindings found = TRY(brellin::analyze(services.forAnalysis(), request, control));
    const NeverSet unwanted(never);
    std::erase_if(found.proposals, [&](const AgentProposal &one) { return unwanted.contains(one); });
    return found;
}

std::vector<Location> unreadableOf(const OperationEnd &how)
{
    if (const auto *const scanned = std::get_if<ScanFindings>(&how))
        return scanned->unreadable;
    const auto *const analyzed = std::get_if<AnalysisFindings>(&how);
    return analyzed ? analyzed->unreadable : std::vector<Location>();
}

std::set<QUuid> unwantedOf(const std::vector<AgentProposal> &proposals, const std::vector<NeverProposed> &never)
{
    const NeverSet refused(never);
    std::set<QUuid> ids;
    for (const AgentProposal &one : proposals) {
        if (refused.contains(one))
            ids.insert(one.id);
    }
    return ids;
}

/// Moves the proposals that are wanted out of the list.
template <class Wanted>
std::vector<AgentProposal> takenFrom(std::vector<AgentProposal> &list, const Wanted &isWanted)
{
    const auto others = std::ranges::stable_partition(list, isWanted);
    std::vector<AgentProposal> taken(std::move_iterator(list.begin()), std::move_iterator(others.begin()));
    list.erase(list.begin(), others.begin());
    return taken;
}

} // namespace

/// Recovery may block if a run touched a server that does not respond.
void CleanupAgent::start()
{
    if (!begin(QStringLiteral("Prüfe unterbrochene Läufe …")))
        return;
    m_recovering.start(
        m_pool, [services = m_services](JobControl &) { return takeOver(services); },
        [this, before = changes()](Stored found) {
            publish(running, false);
            publish(status, QString());
            takeIfNew(std::move(found), {RunKeys::history}, before);
            schedule();
        });
}

void CleanupAgent::schedule()
{
    m_schedule.arm(intervalHours.get());
    scanIfDue();
}

void CleanupAgent::tick()
{
    const bool free = !running.get() && !pendingProfile.get() && m_attendedViews.empty();
    if (free)
        scanIfDue();
    if (m_receiptTick)
        m_receiptTick();
}

bool CleanupAgent::begin(const QString &what)
{
    if (running.get())
        return false;
    m_failure.reset();
    m_notSearched.clear();
    m_cancelled = false;
    publish(executedRun, std::optional<QUuid>());
    publish(running, true);
    publish(progress, 0.0);
    publish(status, what);
    return true;
}

void CleanupAgent::end(const QString &what, OperationEnd how)
{
    // An observer may begin the next operation.
    const auto ended = std::exchange(m_ended, {});
    m_notSearched = unreadableOf(how);
    publish(detail, QString());
    publish(running, false);
    publish(status, what);
    reload({});
    if (ended)
        ended(std::move(how));
}

void CleanupAgent::fail(const Failure &why)
{
    m_failure = why;
    end(why.message, why);
}

void CleanupAgent::watch(const JobControl &control)
{
    if (const QString stage = control.stage(); !stage.isEmpty())
        publish(status, stage);
    publish(detail, control.detail());
    const qint64 total = control.total();
    publish(progress, total > 0 ? static_cast<double>(control.done()) / static_cast<double>(total) : 0.0);
}

void CleanupAgent::cancel()
{
    m_cancelled = true;
    m_reading.cancel();
    m_scan.cancel();
    m_analyzing.cancel();
    m_finishing.cancel();
    m_executing.cancel();
    m_undoing.cancel();
}

AnalysisRequest CleanupAgent::analysisRequest(const Location &folder) const
{
    // Shared by the copies of this function; the time starts with the first question.
    const auto end = std::make_shared<std::optional<std::chrono::steady_clock::time_point>>();
    const auto choose = [&model = m_services.model, pdfText = m_services.pdfText,
                         end](const Location &file, const QStringList &names,
                              const JobControl &control) -> std::optional<QString> {
        const auto now = std::chrono::steady_clock::now();
        if (!*end)
            *end = now + AiSorting::budget;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(**end - now);
        if (left.count() <= 0)
            return std::nullopt;
        std::optional<QString> name =
            AgentAI::folderName(model, file, names, pdfText, std::min(left, AiSorting::answerLimit), &control);
        return name && names.contains(*name) ? name : std::nullopt;
    };
    return {folder, profiles.get(), rules.get(), {}, m_services.clock.now(), choose};
}

void CleanupAgent::analyze(const Location &folder, const Done<AnalysisFindings> &done)
{
    if (!begin(QStringLiteral("Prüfe Ordner …"), done))
        return;
    publish(pendingProfile, std::optional<FolderProfile>());
    m_analysedFolder = folder;
    readAfresh([this] { startAnalysis(); });
}

void CleanupAgent::startAnalysis()
{
    const AnalysisRequest request = analysisRequest(*m_analysedFolder);
    m_analyzing.start(
        m_pool,
        [services = m_services, request, list = never.get()](JobControl &control) {
            return analyzeKnowing(services, request, list, control);
        },
        [this](Result<AnalysisFindings> found) { analyzed(std::move(found)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::analyzed(Result<AnalysisFindings> found)
{
    if (!found || m_cancelled) {
        if (!found && found.error().is(std::errc::illegal_byte_sequence))
            m_toRead.insert(RunKeys::history);
        return fail(found ? Failure::cancelled() : found.error());
    }
    m_analysis = *std::move(found);
    m_listedFolder = m_analysedFolder;
    showProposals(m_analysis->proposals);
    if (m_analysis->end == AnalysisFindings::End::NeedsProfile)
        publish(pendingProfile, m_analysis->detected);
    publish(leftNothing, proposals.get().empty() && m_analysis->end == AnalysisFindings::End::Done);
    end(m_analysis->summary(), *m_analysis);
}

void CleanupAgent::confirmPendingProfile(const FolderProfile &profile, const Done<AnalysisFindings> &done)
{
    if (running.get() || !pendingProfile.get()) {
        if (done)
            done(failure(AgentError::alreadyWorking()));
        return;
    }
    const Result<void> stored = updateProfiles([&](std::vector<FolderProfile> all) {
        std::erase_if(all, [&](const FolderProfile &one) { return one.root() == profile.root(); });
        all.push_back(profile);
        return all;
    });
    // Do not touch the folder unless its protection is stored.
    if (!stored) {
        fail(stored.error());
        if (done)
            done(failure(stored.error()));
        return;
    }
    publish(pendingProfile, std::optional<FolderProfile>());
    if (m_analysedFolder)
        analyze(Location(*m_analysedFolder), done);
}

void CleanupAgent::cancelPendingProfile()
{
    if (running.get() || !pendingProfile.get())
        return;
    publish(pendingProfile, std::optional<FolderProfile>());
    m_analysedFolder.reset();
    m_listedFolder.reset();
    showProposals({});
    publish(leftNothing, false);
    publish(status, QStringLiteral("Abgebrochen – ohne Schutzprofil wird ein Software-Projekt nicht aufgeräumt."));
}

void CleanupAgent::executeChosen(const Done<ExecutionOutcome> &done)
{
    const auto ticked = std::make_shared<const std::set<QUuid>>(chosen.get());
    if (begin(QStringLiteral("Führe Vorschläge aus …"), done))
        readAfresh([this, ticked] { startExecution(ticked); });
}

/// Leaves out proposals that the user has put on the never-propose list in another window.
void CleanupAgent::startExecution(const std::shared_ptr<const std::set<QUuid>> &ticked)
{
    auto work = [services = m_services, ticked, listed = proposals.get(),
                 refused = never.get()](JobControl &control) mutable {
        std::set<QUuid> unwanted = unwantedOf(listed, refused);
        const std::vector<AgentProposal> wanted = takenFrom(
            listed, [&](const AgentProposal &one) { return ticked->contains(one.id) && !unwanted.contains(one.id); });
        Execution execution(services);
        Result<ExecutionOutcome> outcome = execution.execute(wanted, control);
        ChangedProposals followed;
        std::vector<EntryMove> made;
        if (outcome && outcome->run) {
            followed = followedKept(listed, *outcome->run);
            followed.merge(followedKept(wanted, *outcome->run));
            made = movesOf(*outcome->run);
        }
        return Worked<ExecutionOutcome>{std::move(outcome), execution.history(), std::move(followed),
                                        std::move(unwanted), std::move(made)};
    };
    m_executing.start(
        m_pool, std::move(work), [this](Worked<ExecutionOutcome> worked) { executed(std::move(worked)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::executed(Worked<ExecutionOutcome> worked)
{
    m_listed.remove(worked.unwanted);
    Result<ExecutionOutcome> &result = worked.outcome;
    if (!result)
        return fail(result.error());
    publishMoves(std::move(worked.moves));
    std::set<QUuid> ticked = chosen.get();
    std::map<QUuid, QString> texts;
    for (const FailedProposal &failed : result->failures) {
        ticked.erase(failed.proposal);
        texts.emplace(failed.proposal, failed.why.message);
    }
    if (!texts.empty())
        choose(ticked);
    m_listed.noteFailures(std::move(texts));
    m_listed.remove(std::set<QUuid>(result->done.begin(), result->done.end()));
    m_listed.follow(worked.followed);
    publishHistory(std::move(worked.history));
    QString text = counting(result->done.size()) + QStringLiteral(" erledigt");
    if (result->failures.empty())
        text += u'.';
    else
        text += QStringLiteral(" · %1 fehlgeschlagen: ").arg(counting(result->failures.size())) +
                result->failureTexts().join(QStringLiteral("; "));
    text += noteNotStored(*result);
    if (!result->dropped.empty())
        text += u' ' + textOf(result->dropped);
    publish(leftNothing, proposals.get().empty());
    if (result->run && !result->notStored)
        publish(executedRun, std::optional(result->run->id));
    end(text, *std::move(result));
}

/// The suffix for a run that could not be stored in the history; its journal stays for recovery.
QString CleanupAgent::noteNotStored(const ExecutionOutcome &outcome)
{
    if (!outcome.notStored)
        return {};
    m_failure = outcome.notStored;
    return QStringLiteral(
               " · Der Verlauf konnte nicht gespeichert werden: %1 Er wird beim nächsten Start nachgetragen.")
        .arg(outcome.notStored->message);
}

void CleanupAgent::undo(const QUuid &run, const Done<UndoOutcome> &done)
{
    const auto found = std::ranges::find(history.get(), run, &JournalRun::id);
    const auto known = aftermath.get().find(run);
    const bool hasRest = known != aftermath.get().end() && !known->second.left.empty();
    if (found == history.get().end() || (found->undone && !hasRest)) {
        if (done)
            done(failure(Failure()));
        return;
    }
    if (!begin(QStringLiteral("Mache rückgängig …"), done))
        return;
    noteNotUndone(run, {});
    const auto work = [services = m_services, taken = *found, listed = proposals.get()](JobControl &control) {
        const UndoWitness witness(taken);
        Result<UndoOutcome> outcome = UndoRun(services).undo(taken.id, control);
        // An interrupted undo has restored some steps too.
        ChangedProposals followed = followedBack(listed, taken);
        return Worked<UndoOutcome>{
            std::move(outcome), RunHistory(services.defaults).shown(), std::move(followed), {}, witness.moves()};
    };
    m_undoing.start(
        m_pool, work, [this, run](Worked<UndoOutcome> worked) { undone(run, std::move(worked)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::undone(const QUuid &run, Worked<UndoOutcome> worked)
{
    m_listed.follow(worked.followed);
    publishHistory(std::move(worked.history));
    publishMoves(std::move(worked.moves));
    Result<UndoOutcome> &result = worked.outcome;
    if (!result || result->cancelled) {
        const Failure why = result ? Failure::cancelled() : result.error();
        noteNotUndone(
            run, why.isCancelled()
                     ? QStringLiteral("Abgebrochen. Ein Teil ist schon zurückgelegt, ein neuer Versuch macht weiter.")
                     : why.message);
        return fail(why);
    }
    end(result->status(), *result);
}

void CleanupAgent::publishMoves(std::vector<EntryMove> made)
{
    publish(moves, std::move(made));
    publish(moves, std::vector<EntryMove>());
}

void CleanupAgent::noteNotUndone(const QUuid &run, const QString &why)
{
    std::map<QUuid, QString> all = notUndone.get();
    all.erase(run);
    if (!why.isEmpty())
        all.emplace(run, why);
    publish(notUndone, std::move(all));
}

ReviewSubject CleanupAgent::reviewSubject(const std::optional<Location> &folder) const
{
    ReviewSubject subject{folder, {}, proposals.get(), profiles.get()};
    for (const CleanupRule &rule : rules.get()) {
        const Location source = locationFromText(rule.sourcePath);
        if (rule.enabled && std::ranges::find(subject.sourceFolders, source) == subject.sourceFolders.end())
            subject.sourceFolders.push_back(source);
    }
    return subject;
}

Result<ReviewReport> CleanupAgent::writeReport(const std::optional<Location> &folder) const
{
    return writeReviewReport(reviewSubject(folder), m_services.folders.dir(StandardFolder::Documents),
                             m_services.clock.now());
}

void CleanupAgent::handOverToClaude(const std::optional<Location> &folder, Workspace &workspace, Pasteboard &pasteboard)
{
    if (m_reporting.running() || m_handingOver.running())
        return;
    m_reporting.start(
        m_pool,
        [subject = reviewSubject(folder), documents = m_services.folders.dir(StandardFolder::Documents),
         now = m_services.clock.now()](JobControl &) { return writeReviewReport(subject, documents, now); },
        [this, &workspace, &pasteboard](const Result<ReviewReport> &report) {
            if (!report)
                return publish(status, report.error().message);
            pasteboard.setText(report->request);
            openReport(*report, workspace);
        });
}

/// Runs on a worker: the assistant and the file manager may take seconds to respond.
void CleanupAgent::openReport(const ReviewReport &report, Workspace &workspace)
{
    m_handingOver.start(
        m_pool, [report, &workspace](JobControl &) { return handOver(report, workspace); },
        [this](const QString &text) { publish(status, text); });
}

} // namespace brellin

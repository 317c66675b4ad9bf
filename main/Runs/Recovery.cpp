#include "Runs/Recovery.h"

#include "Disk/FreeName.h"
#include "Runs/EntrySearch.h"
#include "Runs/LeftCopy.h"
#include "Runs/Placement.h"
#include "Runs/ReservedName.h"
#include "Runs/RunHistory.h"
#include "Runs/RunJournal.h"
#include "Runs/RunTraces.h"
#include "Runs/StateFolder.h"

#include <algorithm>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

/// Determines from the disk how far a step got that was planned and has no result in the journal.
class Settlement {
public:
    explicit Settlement(const RunServices &services) : m_services(services) {}

    /// Excludes the locations of finished steps from the search for others.
    void heedDone(const std::vector<JournalledStep> &steps);
    std::optional<JournalStep> settle(const JournalledStep &step);
    /// A planned entry cannot be found any more, or an empty file may be ours: keep the journal for inspection.
    bool lostTrack() const { return m_lostTrack; }

private:
    std::optional<JournalStep> settleTrashed(const PlannedStep &plan);
    std::optional<JournalStep> settleCopied(const JournalledStep &step);
    std::optional<JournalStep> settleMoved(const PlannedStep &plan);
    std::optional<Location> inTarget(const PlannedStep &plan, const EntryMark &entry)
    {
        return plan.to ? m_search.find(*plan.to, entry) : std::nullopt;
    }
    std::optional<Location> placeLeftCopy(const JournalledStep &step);

    const RunServices &m_services;
    EntrySearch m_search;
    bool m_lostTrack = false;
};

std::optional<JournalStep> Settlement::settleTrashed(const PlannedStep &plan)
{
    if (plan.entry.isAt(plan.from))
        return std::nullopt;
    const std::optional<Location> place = m_services.trash.find(plan.from, plan.entry.state.identity);
    m_lostTrack = m_lostTrack || (!place && plan.entry.state.identity != FileIdentity());
    return place ? std::optional(JournalStep{Kind::Trash, plan.from, place, {}}) : std::nullopt;
}

std::optional<JournalStep> Settlement::settleCopied(const JournalledStep &step)
{
    const PlannedStep &plan = step.plan;
    const bool originalThere = plan.entry.isAt(plan.from);
    std::optional<Location> copy = step.copied ? inTarget(plan, *step.copied) : std::nullopt;
    if (!copy && !originalThere)
        copy = placeLeftCopy(step);
    if (!copy) {
        if (isSuperfluous(*step.temporary, plan.from, plan.entry))
            (void)m_services.files.removeOwnCopy(*step.temporary);
        else
            m_lostTrack = m_lostTrack || entryExists(*step.temporary);
        return std::nullopt;
    }
    // If the original is still there, a move did not get beyond its copy.
    if (originalThere || plan.kind == Kind::Copy)
        return JournalStep{Kind::Copy, plan.from, copy, {}};
    return JournalStep{plan.kind, plan.from, copy, m_services.trash.find(plan.from, plan.entry.state.identity)};
}

/// Renames a complete copy from its hidden name to the wanted one if its original is gone.
std::optional<Location> Settlement::placeLeftCopy(const JournalledStep &step)
{
    if (!step.copied || !step.plan.to || !step.copied->isAt(*step.temporary))
        return std::nullopt;
    Location free = unique(*step.plan.to);
    if (!m_services.files.rename(*step.temporary, free))
        return std::nullopt;
    return free;
}

std::optional<JournalStep> Settlement::settleMoved(const PlannedStep &plan)
{
    if (plan.entry.isAt(plan.from))
        return std::nullopt;
    const std::optional<Location> place = inTarget(plan, plan.entry);
    m_lostTrack = m_lostTrack || (!place && plan.entry.state.identity != FileIdentity());
    return place ? std::optional(JournalStep{plan.kind, plan.from, place, {}}) : std::nullopt;
}

void Settlement::heedDone(const std::vector<JournalledStep> &steps)
{
    for (const JournalledStep &step : steps) {
        if (step.done && step.done->kind != Kind::Copy)
            m_search.leave(step.done->from);
        if (step.done && step.done->to)
            m_search.take(*step.done->to);
    }
}

std::optional<JournalStep> Settlement::settle(const JournalledStep &step)
{
    if (step.settled())
        return step.done;
    const ReservedName reserved = clearReservedName(m_services, step);
    m_lostTrack = m_lostTrack || reserved == ReservedName::Unclear;
    if (reserved == ReservedName::Cleared && !step.temporary)
        return std::nullopt;
    if (step.temporary)
        return settleCopied(step);
    switch (step.plan.kind) {
    case Kind::Trash:
        return settleTrashed(step.plan);
    case Kind::Copy:
        return std::nullopt;
    case Kind::Move:
    case Kind::Rename:
        return settleMoved(step.plan);
    }
    return std::nullopt;
}

/// The announced folders that exist.
std::vector<Location> existing(std::vector<Location> folders)
{
    std::erase_if(folders, [](const Location &folder) { return !entryExists(folder); });
    return folders;
}

std::optional<QUuid> recoverRun(const RunServices &services, const Location &file)
{
    Result<RunJournal> journal = RunJournal::takeOver(file);
    if (!journal)
        return std::nullopt;
    const JournalContent &content = journal->content();
    RunHistory history(services.defaults);
    const std::vector<JournalRun> known = history.runs();
    JournalRun run{content.run, content.date, {}, false};
    std::vector<StepMarks> marks;
    bool found = false;
    bool lostTrack = false;
    if (std::ranges::find(known, content.run, &JournalRun::id) == known.end()) {
        Settlement settlement(services);
        settlement.heedDone(content.steps);
        for (const JournalledStep &step : content.steps) {
            if (std::optional<JournalStep> done = settlement.settle(step)) {
                marks.push_back(step.done ? step.marks : marksOf(*done));
                run.steps.push_back(*std::move(done));
            }
        }
        found = !run.steps.empty();
        lostTrack = settlement.lostTrack();
        // Nothing was done: remove the folders created for it.
        for (auto folder = content.folders.rbegin(); !found && folder != content.folders.rend(); ++folder)
            (void)services.files.removeEmptyFolder(*folder);
    }
    // If the history cannot be written, keep the journal for the next start.
    if (found && !history.add(run, {existing(content.folders), marks, volumesOf(services.volumes, run.steps)}))
        return std::nullopt;
    (void)(lostTrack ? journal->keepAside() : journal->discard());
    return found ? std::optional(run.id) : std::nullopt;
}

/// Discards the journal of an undo that is finished, or whose run is no longer in the history.
void dropFinishedUndo(const RunServices &services, const Location &file)
{
    Result<RunJournal> journal = RunJournal::takeOver(file);
    if (!journal)
        return;
    const Result<std::vector<JournalRun>> known = RunHistory(services.defaults).readRuns();
    if (!known)
        return;
    const auto run = std::ranges::find(*known, journal->content().run, &JournalRun::id);
    // Steps that were not restored can be tried again, and then need this journal.
    if (run == known->end() || (run->undone && RunHistory(services.defaults).aftermath(run->id).left.empty()))
        (void)journal->discard();
}

} // namespace

std::vector<QUuid> recoverInterruptedRuns(const RunServices &services)
{
    std::vector<QUuid> recovered;
    const StateFolder state(services.stateFolder);
    const Result<FileLock> lock = state.lockAgent();
    const Result<Location> journals = lock ? state.journals() : Result<Location>(failure(lock.error()));
    if (!journals)
        return recovered;
    for (const Location &file : RunJournal::find(*journals, RunJournal::Purpose::Run)) {
        if (const std::optional<QUuid> run = recoverRun(services, file))
            recovered.push_back(*run);
    }
    for (const Location &file : RunJournal::find(*journals, RunJournal::Purpose::Undo))
        dropFinishedUndo(services, file);
    return recovered;
}

} // namespace brellin

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

/// Finds out from the disk how far a step got that was planned and has no mark.
class Settlement {
public:
    explicit Settlement(const RunServices &services) : m_services(services) {}

    /// What these did is known: their places are not what others are looked for at.
    void heedDone(const std::vector<JournalledStep> &steps);
    std::optional<JournalStep> settle(const JournalledStep &step);
    /// Something was there when the step was planned, and is now nowhere to be found, or an empty file may be ours.
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
    // The original of a move that did not get that far still stands: what was done is a copy.
    if (originalThere || plan.kind == Kind::Copy)
        return JournalStep{Kind::Copy, plan.from, copy, {}};
    return JournalStep{plan.kind, plan.from, copy, m_services.trash.find(plan.from, plan.entry.state.identity)};
}

/// A complete copy that still has its hidden name, while its original is gone from its place: it gets the name that it was
/// to have.
std::optional<Location> Settlement::placeLeftCopy(const JournalledStep &step)
{
    if (!step.copied || !step.plan.to || !step.copied->isAt(*step.temporary))
        return std::nullopt;
    const Location free = unique(*step.plan.to);
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

/// Those of the announced folders that are there now.
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
        // Folders that were made for nothing go again.
        for (auto folder = content.folders.rbegin(); !found && folder != content.folders.rend(); ++folder)
            (void)services.files.removeEmptyFolder(*folder);
    }
    // A history that cannot be written keeps the journal for the next start.
    if (found && !history.add(run, {existing(content.folders), marks, volumesOf(services.volumes, run.steps)}))
        return std::nullopt;
    (void)(lostTrack ? journal->keepAside() : journal->discard());
    return found ? std::optional(run.id) : std::nullopt;
}

/// An undo that was finished, or whose run has fallen out of the history, needs no diary any more.
void dropFinishedUndo(const RunServices &services, const Location &file)
{
    Result<RunJournal> journal = RunJournal::takeOver(file);
    if (!journal)
        return;
    const Result<std::vector<JournalRun>> known = RunHistory(services.defaults).readRuns();
    if (!known)
        return;
    const auto run = std::ranges::find(*known, journal->content().run, &JournalRun::id);
    // What was not put back may be tried again, and then goes on with what the diary knows.
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

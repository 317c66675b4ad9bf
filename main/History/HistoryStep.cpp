#include "History/HistoryStep.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

StepKind stepKind(AgentProposal::Kind kind)
{
    switch (kind) {
    case AgentProposal::Kind::Move:
        return StepKind::Move;
    case AgentProposal::Kind::Copy:
        return StepKind::Copy;
    case AgentProposal::Kind::Rename:
        return StepKind::Rename;
    case AgentProposal::Kind::Trash:
        break;
    }
    return StepKind::Trash;
}

HistoryStep stepOf(const RecordedStep &step)
{
    HistoryStep shown{HistoryStep::By::User, step.id, step.date, step.takenBack.has_value(), {}};
    for (const StepEntry &entry : step.entries) {
        shown.entries.push_back({step.kind, entry});
        // Only for taking it back, which reads the step again.
        shown.entries.back().entry.content.reset();
    }
    return shown;
}

HistoryStep stepOf(const JournalRun &run, const std::vector<StepMarks> &marks)
{
    HistoryStep shown{HistoryStep::By::Agent, run.id, run.date, run.undone, {}};
    for (std::size_t i = 0; i < run.steps.size(); ++i) {
        const JournalStep &step = run.steps[i];
        StepEntry entry{step.from, step.to.value_or(Location()), {}, i < marks.size() ? marks[i].to : std::nullopt};
        entry.takenBack = run.undone;
        shown.entries.push_back({stepKind(step.kind), std::move(entry)});
    }
    return shown;
}

bool liesIn(const Location &place, const Location &folder)
{
    return !place.empty() && isAtOrBelow(place.parent_path(), folder);
}

} // namespace

std::vector<HistoryStep> historyOf(const std::vector<RecordedStep> &steps, const std::vector<JournalRun> &runs,
                                   const RunHistory &history)
{
    std::vector<HistoryStep> all;
    std::ranges::transform(steps, std::back_inserter(all), [](const RecordedStep &step) { return stepOf(step); });
    for (const JournalRun &run : runs)
        all.push_back(stepOf(run, history.traces(run.id).marks));
    std::ranges::stable_sort(all, std::ranges::greater(), &HistoryStep::date);
    return all;
}

HistoryKind historyKind(StepKind kind)
{
    switch (kind) {
    case StepKind::Copy:
        return HistoryKind::Copied;
    case StepKind::Move:
        return HistoryKind::Moved;
    case StepKind::Rename:
    case StepKind::BatchRename:
        return HistoryKind::Renamed;
    case StepKind::Trash:
        return HistoryKind::Trashed;
    case StepKind::Rights:
        return HistoryKind::Permitted;
    case StepKind::Unpack:
        return HistoryKind::Unpacked;
    case StepKind::NewFolder:
    case StepKind::NewFile:
    case StepKind::Alias:
    case StepKind::Archive:
        break;
    }
    return HistoryKind::Made;
}

bool HistoryFilter::matches(const HistoryStep &step) const
{
    return std::ranges::any_of(step.entries, [this](const HistoryEntry &one) {
        return (!kind || historyKind(one.kind) == *kind) &&
               (folder.empty() || liesIn(one.entry.from, folder) || liesIn(one.entry.to, folder));
    });
}

} // namespace brellin

#include "FileOperations/RecordedAction.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

std::vector<StepEntry> plannedEntries(const StepPlan &plan)
{
    if (plan.from.empty())
        return {{{}, plan.to}};
    std::vector<StepEntry> entries;
    for (const Location &one : plan.from)
        entries.push_back({one, plan.to, EntryMark::of(one)});
    return entries;
}

std::vector<StepEntry> plannedEntries(const std::vector<RenamePair> &pairs)
{
    std::vector<StepEntry> entries;
    std::ranges::transform(pairs, std::back_inserter(entries),
                           [](const RenamePair &pair) { return StepEntry{pair.from, pair.to, pair.mark}; });
    return entries;
}

/// Of renames that took a step back: as the step had left them.
std::vector<StepEntry> entriesBefore(const std::vector<UserAction::Entry> &renamed)
{
    std::vector<StepEntry> entries;
    std::ranges::transform(renamed, std::back_inserter(entries), [](const UserAction::Entry &one) {
        return StepEntry{one.to, one.from, {}, EntryMark{one.state, one.created}};
    });
    return entries;
}

/// Of an action that redoes another: from where the entries are now.
std::vector<StepEntry> plannedAgain(const UserAction &action)
{
    const bool made = action.kind == StepKind::Copy || action.kind >= StepKind::NewFolder;
    std::vector<StepEntry> planned;
    for (const UserAction::Entry &one : action.entries) {
        if (one.merged)
            planned.push_back(mergedEntry(one.to, one.from, *one.merged));
        else if (made)
            planned.push_back({one.source, one.from});
        else
            planned.push_back(
                {one.to, one.from, EntryMark{one.state, one.created}, {}, {}, {}, {}, false, {}, one.rights});
    }
    return planned;
}

UndoneAction redoRecorded(const UserAction &action, const UndoServices &services, JobControl &control)
{
    OpenStep step = services.records->begin(action.kind, plannedAgain(action));
    UndoneAction undone = undoAction(action, services, control);
    if (undone.again)
        undone.again->step = step.id();
    step.settle(stepEntries(undone.repeated));
    return undone;
}

UserAction::Entry actionEntry(const StepEntry &entry)
{
    EntryMark mark = entry.now.value_or(EntryMark());
    const Result<FileAttributes> now = readAttributes(entry.to);
    // Without a birth a reused inode would pass for the entry.
    mark.state.identity = now && mark.isSame(*now) ? now->identity : FileIdentity();
    return {entry.from,   entry.to,      mark.state, entry.replaced, entry.replacedMark,
            mark.created, entry.content, {},         entry.merged,   entry.rights};
}

} // namespace

std::vector<StepEntry> stepEntries(const std::vector<UserAction::Entry> &entries)
{
    std::vector<StepEntry> all;
    std::ranges::transform(entries, std::back_inserter(all), [](const UserAction::Entry &one) {
        if (one.merged)
            return mergedEntry(one.from, one.to, *one.merged);
        return StepEntry{one.from,     one.to,           {},          EntryMark{one.state, one.created},
                         one.replaced, one.replacedMark, one.content, false,
                         {},           one.rights};
    });
    return all;
}

UserAction actionOf(const RecordedStep &step)
{
    UserAction action{step.kind, {}, false, step.id};
    for (const StepEntry &entry : step.entries) {
        if (!entry.takenBack)
            action.entries.push_back(actionEntry(entry));
    }
    return action;
}

OperationWork recorded(StepRecords *records, StepPlan plan, OperationWork work)
{
    if (!records)
        return work;
    return [records, plan = std::move(plan), work = std::move(work)](JobControl &control) {
        OpenStep step = records->begin(plan.kind, plannedEntries(plan));
        OperationOutcome outcome = work(control);
        outcome.action.step = step.id();
        step.settle(stepEntries(outcome.action.entries));
        return outcome;
    };
}

UndoneAction undoRecorded(const UserAction &action, const UndoServices &services, JobControl &control)
{
    if (services.records && action.undone)
        return redoRecorded(action, services, control);
    if (!services.records || action.step.isNull())
        return undoAction(action, services, control);
    OpenStep step = services.records->takeBack(action.step, action.kind, stepEntries(action.entries));
    UndoneAction undone = undoAction(action, services, control);
    std::vector<StepEntry> back;
    std::ranges::transform(undone.undone, std::back_inserter(back),
                           [](const UserAction::Entry &one) { return StepEntry{one.to, one.from}; });
    step.settle(std::move(back));
    return undone;
}

BatchRenameOutcome renameBatchRecorded(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                                       JobControl &control, StepRecords *records, const QUuid &step)
{
    OpenStep open = records ? records->begin(StepKind::BatchRename, plannedEntries(pairs), step) : OpenStep();
    BatchRenameOutcome outcome = renameBatch(pairs, files, logs, control);
    open.settle(stepEntries(outcome.done));
    return outcome;
}

BatchRenameOutcome takeBatchBack(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                                 JobControl &control, StepRecords *records, const QUuid &step)
{
    std::vector<StepEntry> entries;
    for (const RenamePair &pair : pairs)
        entries.push_back({pair.to, pair.from, {}, pair.mark});
    OpenStep open = records ? records->takeBack(step, StepKind::BatchRename, entries) : OpenStep();
    BatchRenameOutcome outcome = renameBatch(pairs, files, logs, control);
    open.settle(entriesBefore(outcome.done));
    return outcome;
}

} // namespace brellin

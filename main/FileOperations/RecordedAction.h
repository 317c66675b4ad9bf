#pragma once

#include "Base/JobControl.h"
#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/OperationOutcome.h"
#include "FileOperations/UndoAction.h"
#include "Records/StepRecords.h"

#include <functional>

namespace brellin {

/// The entries of an action in the form of the history.
std::vector<StepEntry> stepEntries(const std::vector<UserAction::Entry> &entries);

/// What of a recorded step can still be taken back, as an action. Blocking: numbers of devices change with a new start, and
/// an entry that is known again gets its present one.
UserAction actionOf(const RecordedStep &step);

using OperationWork = std::function<OperationOutcome(JobControl &)>;

/// Work that is recorded as a step of the user's history, whose id the outcome's action gets. Without records it is the work
/// itself.
OperationWork recorded(StepRecords *records, StepPlan plan, OperationWork work);

/// Undoes like `undoAction` and records it: as taking the action's step back; a redo is a step of its own. Blocking.
UndoneAction undoRecorded(const UserAction &action, const UndoServices &services, JobControl &control);

/// Renames like `renameBatch` and records it as this step.
BatchRenameOutcome renameBatchRecorded(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                                       JobControl &control, StepRecords *records, const QUuid &step);
/// The same the other way round: takes the step back.
BatchRenameOutcome takeBatchBack(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                                 JobControl &control, StepRecords *records, const QUuid &step);

} // namespace brellin

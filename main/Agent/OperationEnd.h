#pragma once

#include "Agent/Analysis/FolderAnalysis.h"
#include "Agent/Scan.h"
#include "Base/Result.h"
#include "Runs/Execution.h"
#include "Runs/UndoRun.h"

#include <variant>

namespace brellin {

/// How an operation of the agent ended: with what it found or did, or with the reason why it failed.
using OperationEnd = std::variant<Failure, ScanFindings, AnalysisFindings, ExecutionOutcome, UndoOutcome>;

/// The result of an operation that finds a `Found`.
template <class Found>
Result<Found> resultOf(OperationEnd end)
{
    if (const Failure *const why = std::get_if<Failure>(&end))
        return failure(*why);
    return std::get<Found>(std::move(end));
}

} // namespace brellin

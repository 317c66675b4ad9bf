#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Transfers/TransferQuestion.h"
#include "Transfers/TransferServices.h"
#include "Transfers/TransferStep.h"

#include <QString>

#include <set>
#include <vector>

namespace brellin {

/// What a look through all sources before the first byte has found.
struct Inspection {
    std::vector<TransferSize> sizes; ///< of the steps, in their order
    QStringList obstacles;           ///< lines of what the destination cannot take, or a source cannot give up …
    qsizetype atTheSource = 0;       ///< … and how many of the latter
    std::set<std::size_t> hindered;  ///< the steps with obstacles …
    QStringList hinderedNames;       ///< … their sources
    bool hindersFolders = false;     ///< … and whether one of those is a folder

    TransferSize total() const;
    std::optional<ObstacleQuestion> question() const;
    /// The same without the steps that have obstacles, which are taken out of `steps`.
    Inspection withoutHindered(std::vector<TransferStep> &steps) const;
};

/// Measures all steps and looks for what the destination cannot take: names, sizes, names that fall together, too little free
/// space; of a move also for folders in the sources that nothing can be taken away from. A move within a volume is one rename:
/// it is measured for a moment at most, and has no obstacles. On a worker. Fails only when cancelled.
Result<Inspection> inspectSteps(const std::vector<TransferStep> &steps, TransferKind kind,
                                const TransferServices &services, const JobControl &control);

} // namespace brellin

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

/// Result of checking all sources before copying starts.
struct Inspection {
    std::vector<TransferSize> sizes; ///< of the steps, in their order
    QStringList obstacles;           ///< lines about what the destination cannot store or the source cannot give up
    qsizetype atTheSource = 0;       ///< how many of them concern the source
    std::set<std::size_t> hindered;  ///< indices of the steps with obstacles
    QStringList hinderedNames;       ///< names of their sources
    bool hindersFolders = false;     ///< whether one of them is a folder

    TransferSize total() const;
    std::optional<ObstacleQuestion> question() const;
    /// The inspection without the steps that have obstacles; removes them from `steps`.
    Inspection withoutHindered(std::vector<TransferStep> &steps) const;
    /// Adds the result of some of the steps, of these numbers, whose sizes have a place already.
    void include(const Inspection &part, const std::vector<std::size_t> &numbers);
};

/// Measures all steps and finds obstacles: invalid or colliding names, files too large, too little space; for moves
/// also folders whose content cannot be removed. Moves within a volume are renames: they have no obstacles, and are
/// measured for 300 ms at most, on network volumes not at all. Call on a worker. Fails only if cancelled.
Result<Inspection> inspectSteps(const std::vector<TransferStep> &steps, TransferKind kind,
                                const TransferServices &services, const JobControl &control);

} // namespace brellin

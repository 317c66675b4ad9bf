#pragma once

#include "Transfers/TransferEngine.h"

#include <QUuid>

namespace brellin {

/// Runs steps like `TransferEngine::run` and records them as one step of the user's history, or as a further part of it.
TransferOutcome runRecorded(const TransferServices &services, const QUuid &step, const std::vector<TransferStep> &steps,
                            TransferKind kind, TransferState &state, const std::vector<TransferSize> &sizes,
                            const std::vector<MergedFolder> &merged = {});

} // namespace brellin

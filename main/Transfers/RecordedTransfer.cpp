#include "Transfers/RecordedTransfer.h"

#include "Records/StepRecords.h"

namespace brellin {

namespace {

std::vector<StepEntry> plannedEntries(const std::vector<TransferStep> &steps)
{
    std::vector<StepEntry> entries;
    for (const TransferStep &step : steps)
        entries.push_back({step.src,
                           step.dst,
                           EntryMark::of(step.src),
                           {},
                           {},
                           step.replace ? EntryMark::of(step.dst) : std::nullopt});
    return entries;
}

/// Of a move, an entry whose original had to stay has not gone anywhere.
std::vector<StepEntry> entriesOf(const std::vector<TransferredEntry> &done, TransferKind kind)
{
    std::vector<StepEntry> entries;
    for (const TransferredEntry &one : done) {
        if (one.moved == (kind == TransferKind::Move))
            entries.push_back(
                {one.src, one.dst, {}, EntryMark{one.state, one.created}, one.replaced, one.replacedMark, one.content});
    }
    return entries;
}

} // namespace

TransferOutcome runRecorded(const TransferServices &services, const QUuid &step, const std::vector<TransferStep> &steps,
                            TransferKind kind, TransferState &state, const std::vector<TransferSize> &sizes)
{
    OpenStep open = services.records
                        ? services.records->begin(kind == TransferKind::Move ? StepKind::Move : StepKind::Copy,
                                                  plannedEntries(steps), step)
                        : OpenStep();
    TransferOutcome outcome = TransferEngine(services).run(steps, kind, state, sizes);
    open.settle(entriesOf(outcome.done, kind));
    return outcome;
}

} // namespace brellin

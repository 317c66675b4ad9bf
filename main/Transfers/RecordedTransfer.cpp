#include "Transfers/RecordedTransfer.h"

#include "Records/StepRecords.h"

namespace brellin {

namespace {

void addMerged(std::vector<StepEntry> &entries, const std::vector<MergedFolder> &merged)
{
    for (const MergedFolder &folder : merged)
        entries.push_back(mergedEntry(folder.src, folder.dst, folder.facts));
}

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
                            TransferKind kind, TransferState &state, const std::vector<TransferSize> &sizes,
                            const std::vector<MergedFolder> &merged)
{
    const bool moves = kind == TransferKind::Move;
    std::vector<StepEntry> planned = services.records ? plannedEntries(steps) : std::vector<StepEntry>();
    if (moves)
        addMerged(planned, merged);
    OpenStep open =
        services.records ? services.records->begin(moves ? StepKind::Move : StepKind::Copy, planned, step) : OpenStep();
    TransferOutcome outcome = TransferEngine(services).run(steps, kind, state, sizes, merged);
    std::vector<StepEntry> done = entriesOf(outcome.done, kind);
    addMerged(done, outcome.emptied);
    open.settle(std::move(done));
    return outcome;
}

} // namespace brellin

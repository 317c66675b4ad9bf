#include "Transfers/TransferEngine.h"

#include "Transfers/StepRun.h"

namespace brellin {

TransferOutcome TransferEngine::run(const std::vector<TransferStep> &steps, TransferKind kind, TransferState &state,
                                    const std::vector<TransferSize> &sizes,
                                    const std::vector<MergedFolder> &merged) const
{
    StepRun run(m_services, kind, state, steps, merged);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        state.waitWhilePaused();
        const TransferStep &step = steps[i];
        const TransferSize size = i < sizes.size() ? sizes[i] : measure(step.src, &state.control());
        if (state.cancelled())
            break;
        run.settleBefore(step);
        state.beginEntry(shownName(step.src));
        Result<TransferredEntry> done = run.carryOut(step);
        if (done) {
            if (done->size == TransferSize())
                done->size = size;
            run.outcome.transferred += size;
            run.outcome.done.push_back(std::move(*done));
        } else if (!done.error().isCancelled() && !run.asksAgainAbout(step)) {
            run.outcome.errors << EntryFailure{step.src, done.error()};
        }
        state.finishStep(size);
    }
    run.settle();
    run.removeMerged();
    run.outcome.cancelled = state.cancelled() && run.outcome.done.size() < steps.size();
    return std::move(run.outcome);
}

Result<CopyReport> TransferEngine::copy(const Location &source, const Location &destination, TransferState &state,
                                        CopiedEntries *copied) const
{
    state.beginEntry(shownName(source));
    CopyOptions options;
    options.control = &state.control();
    options.copied = copied;
    options.progress = [&state](const CopyProgress &progress) {
        state.advance(shownName(progress.current), progress.bytes, progress.files);
    };
    return m_services.files.copy(source, destination, options);
}

} // namespace brellin

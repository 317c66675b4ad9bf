#pragma once

#include "Disk/FileCall.h"
#include "Transfers/ConflictRound.h"
#include "Transfers/Inspection.h"
#include "Transfers/TransferQueue.h"

namespace brellin {

/// One transfer of the queue: examines, asks, measures, runs. Reports questions and its end to the queue, which then
/// destroys it.
class Transfer {
public:
    Transfer(TransferQueue &queue, const QUuid &id, TransferRequest request);
    ~Transfer();
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    const QUuid &id() const { return m_id; }
    const QUuid &pane() const { return m_request.pane; }
    const std::shared_ptr<TransferJob> &job() const { return m_job; }
    const std::optional<TransferQuestion> &question() const { return m_question; }

    // Each of these may destroy the transfer: the caller must not use it afterwards.
    void start();
    void answer(const TransferAnswer &answer);
    void cancel();

private:
    void examined(Result<Examination> found);
    void askAboutConflicts();
    void lookInto(const ExaminedSource &folder);
    void plan();
    void planned(std::vector<TransferStep> steps);
    void inspected(Result<Inspection> inspection);
    void answerObstacles(ObstacleChoice choice);
    void run();
    void ran(TransferOutcome outcome);
    void examineAgain(std::vector<SourcePlace> places);
    void ask(ConflictRound::About about);
    void endCancelled();
    void end(TransferOutcome outcome);

    TransferQueue &m_queue;
    const QUuid m_id;
    const TransferRequest m_request;
    const std::shared_ptr<TransferJob> m_job;
    std::optional<TransferQuestion> m_question;
    std::optional<ConflictRound> m_conflicts;
    EntryFailures m_refused;
    std::vector<TransferStep> m_steps;
    std::vector<MergedFolder> m_merged; ///< and not removed yet
    std::vector<SourcePlace> m_putOff;  ///< conflicts to be asked about at the end
    std::vector<TransferStep> m_begun;  ///< all steps that were started
    TransferSize m_total;               ///< size of those steps
    TransferOutcome m_outcome;          ///< results so far
    Inspection m_inspection;

    FileCall<Result<Examination>> m_examining;
    FileCall<Result<ExaminedMerge>> m_lookingInto;
    FileCall<std::vector<TransferStep>> m_planning;
    FileCall<Result<Inspection>> m_inspecting;
    FileCall<TransferOutcome> m_running;
};

} // namespace brellin

#pragma once

#include "Base/Published.h"
#include "System/Clock.h"
#include "Transfers/TransferJob.h"
#include "Transfers/TransferQuestion.h"
#include "Transfers/TransferRecord.h"
#include "Transfers/TransferServices.h"

#include <QUuid>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

class Transfer;

/// A requested transfer.
struct TransferRequest {
    std::vector<Location> sources;
    Location destination; ///< a folder
    TransferKind kind = TransferKind::Copy;
    QUuid pane; ///< the requesting pane; runs one transfer at a time
};

/// A request waiting for another transfer of its pane.
struct WaitingTransfer {
    QUuid id;
    QString title; ///< like TransferJob::title()

    bool operator==(const WaitingTransfer &) const = default;
};

/// Result of a transfer.
struct FinishedTransfer {
    TransferRecord record;
    QUuid pane;
    std::vector<Location> sources; ///< as requested
    TransferOutcome outcome;
    std::vector<TransferStep> steps; ///< as planned; empty if cancelled before

    bool operator==(const FinishedTransfer &) const = default;
    /// The error lines for the pane's `errorMessage`; none if there are none.
    std::optional<QString> errorMessage() const;
    /// Entries to select in the destination; of what was merged, the folder there.
    std::vector<Location> arrived() const;
};

/// All transfers of the program: plans, asks, runs each on a worker and reports the result. One at a time per pane; a
/// transfer continues if its pane is closed. Lives on the main thread and makes no file calls there.
class TransferQueue : public Model<TransferQueue> {
public:
    TransferQueue(TransferServices services, const Clock &clock);
    /// Cancels everything without waiting for running steps.
    ~TransferQueue() override;

    Published<std::vector<std::shared_ptr<TransferJob>>> jobs;
    Published<std::vector<WaitingTransfer>> waiting;
    /// Open questions, oldest first; at most one per transfer.
    Published<std::vector<TransferQuestion>> questions;
    /// The last transfer that ended, for whatever reason.
    Published<std::optional<FinishedTransfer>> lastFinished;

    /// Starts a transfer, or queues it behind the pane's others. Returns its ID.
    QUuid transfer(TransferRequest request);
    /// Ignores answers to closed questions and of the wrong kind.
    void answer(const QUuid &question, const TransferAnswer &answer);
    /// Cancels a running or waiting transfer.
    void cancel(const QUuid &transfer);
    void cancelAll();

    /// The pane's running transfer; null if there is none.
    std::shared_ptr<TransferJob> jobOf(const QUuid &pane) const;
    /// Whether any transfer is planning, asking, running or waiting; ask before quitting.
    bool busy() const;

    /// Sources of unfinished moves already offered in any window; offered again after a restart.
    std::set<Location> &offeredMoves() { return m_offeredMoves; }

private:
    friend class Transfer;
    struct Waiting {
        QUuid id;
        TransferRequest request;
    };

    bool atWork(const QUuid &pane) const;
    void begin(const QUuid &id, TransferRequest request);
    void publishAll();
    std::vector<WaitingTransfer> waitingNow() const;
    std::vector<std::shared_ptr<TransferJob>> jobsNow() const;
    std::vector<TransferQuestion> questionsNow() const;
    void ended(const QUuid &id, FinishedTransfer finished);
    void startNext(const QUuid &pane);

    TransferServices m_services;
    const Clock &m_clock;
    std::vector<std::unique_ptr<Transfer>> m_transfers; ///< in order of their start
    std::deque<Waiting> m_waiting;
    std::set<Location> m_offeredMoves;
};

} // namespace brellin

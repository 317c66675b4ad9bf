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

/// What somebody wants transferred.
struct TransferRequest {
    std::vector<Location> sources;
    Location destination; ///< a folder
    TransferKind kind = TransferKind::Copy;
    QUuid pane; ///< who asks: one transfer at a time for each
};

/// A request that waits for its pane's transfer before it.
struct WaitingTransfer {
    QUuid id;
    QString title; ///< as of a job

    bool operator==(const WaitingTransfer &) const = default;
};

/// What a transfer has come to.
struct FinishedTransfer {
    TransferRecord record;
    QUuid pane;
    TransferOutcome outcome;
    std::vector<TransferStep> steps; ///< as planned; none where it was cancelled before

    bool operator==(const FinishedTransfer &) const = default;
    /// The error lines, for the pane's `errorMessage`; nothing where there are none.
    std::optional<QString> errorMessage() const;
    /// What to select in the destination.
    std::vector<Location> arrived() const;
};

/// All transfers of the program: plans each, asks what must be asked, runs it on a worker and says what came of it. One at a
/// time for each pane, the others wait; a transfer outlives the pane that asked for it. Lives on the main thread and makes
/// no file calls there.
class TransferQueue : public Model<TransferQueue> {
public:
    TransferQueue(TransferServices services, const Clock &clock);
    /// Cancels everything; a step at hand ends by itself.
    ~TransferQueue() override;

    Published<std::vector<std::shared_ptr<TransferJob>>> jobs;
    Published<std::vector<WaitingTransfer>> waiting;
    /// Open questions, the oldest first; at most one of each transfer.
    Published<std::vector<TransferQuestion>> questions;
    /// Changes with every transfer that ends, however it ends.
    Published<std::optional<FinishedTransfer>> lastFinished;

    /// Starts a transfer, or lets it wait for the pane's others. Gives its ID.
    QUuid transfer(TransferRequest request);
    /// An answer to what is no longer asked, or of another kind, is dropped.
    void answer(const QUuid &question, const TransferAnswer &answer);
    /// Ends a transfer in whatever it is doing, or takes it out of the waiting ones.
    void cancel(const QUuid &transfer);
    void cancelAll();

    /// The pane's transfer that is under way, if there is one.
    std::shared_ptr<TransferJob> jobOf(const QUuid &pane) const;
    /// Whether anything is planned, asked, under way or waiting: to be asked before the program ends.
    bool busy() const;

    /// The sources of unfinished moves that were offered in any window: with another start they are offered again.
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
    std::vector<std::unique_ptr<Transfer>> m_transfers; ///< in the order in which they began
    std::deque<Waiting> m_waiting;
    std::set<Location> m_offeredMoves;
};

} // namespace brellin

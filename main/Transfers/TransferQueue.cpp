#include "Transfers/TransferQueue.h"

#include "Transfers/Transfer.h"
#include "Transfers/TransferTexts.h"

#include <algorithm>
#include <utility>

namespace brellin {

std::optional<QString> FinishedTransfer::errorMessage() const
{
    return outcome.errors.isEmpty() ? std::nullopt : std::optional(linesOf(outcome.errors).join(u'\n'));
}

std::vector<Location> FinishedTransfer::arrived() const
{
    std::vector<Location> places;
    places.reserve(outcome.done.size());
    for (const TransferredEntry &entry : outcome.done) {
        const Location below = entry.dst.lexically_relative(record.destination);
        const Location place = below.empty() ? entry.dst : record.destination / *below.begin();
        if (places.empty() || places.back() != place)
            places.push_back(place);
    }
    return places;
}

TransferQueue::TransferQueue(TransferServices services, const Clock &clock)
    : m_services(std::move(services))
    , m_clock(clock)
{
}

TransferQueue::~TransferQueue() = default;

QUuid TransferQueue::transfer(TransferRequest request)
{
    const QUuid id = QUuid::createUuid();
    if (atWork(request.pane))
        m_waiting.push_back({id, std::move(request)});
    else
        begin(id, std::move(request));
    publishAll();
    return id;
}

bool TransferQueue::atWork(const QUuid &pane) const
{
    return std::ranges::any_of(m_transfers, [&](const auto &one) { return one->pane() == pane; });
}

void TransferQueue::begin(const QUuid &id, TransferRequest request)
{
    m_transfers.push_back(std::make_unique<Transfer>(*this, id, std::move(request)));
    m_transfers.back()->start();
}

void TransferQueue::answer(const QUuid &question, const TransferAnswer &answer)
{
    const auto asked = std::ranges::find_if(
        m_transfers, [&](const auto &one) { return one->question() && one->question()->id == question; });
    if (asked == m_transfers.end())
        return;
    (*asked)->answer(answer);
    publishAll();
}

void TransferQueue::cancel(const QUuid &transfer)
{
    if (std::erase_if(m_waiting, [&](const Waiting &one) { return one.id == transfer; }) > 0)
        return publishAll();
    const auto found = std::ranges::find(m_transfers, transfer, [](const auto &one) { return one->id(); });
    if (found != m_transfers.end())
        (*found)->cancel();
}

void TransferQueue::cancelAll()
{
    m_waiting.clear();
    std::vector<QUuid> all;
    all.reserve(m_transfers.size());
    for (const auto &one : m_transfers)
        all.push_back(one->id());
    for (const QUuid &id : all)
        cancel(id);
    publishAll();
}

std::shared_ptr<TransferJob> TransferQueue::jobOf(const QUuid &pane) const
{
    const auto found = std::ranges::find(m_transfers, pane, [](const auto &one) { return one->pane(); });
    return found == m_transfers.end() ? nullptr : (*found)->job();
}

bool TransferQueue::busy() const
{
    return !m_transfers.empty() || !m_waiting.empty();
}

/// Builds each list just before publishing it, since an observer of one may change the others.
void TransferQueue::publishAll()
{
    publish(waiting, waitingNow());
    publish(jobs, jobsNow());
    publish(questions, questionsNow());
}

std::vector<WaitingTransfer> TransferQueue::waitingNow() const
{
    std::vector<WaitingTransfer> all;
    for (const Waiting &one : m_waiting) {
        const QString name = shownName(standardised(one.request.destination));
        all.push_back({one.id, transferTitle(one.request.kind, static_cast<int>(one.request.sources.size()), name)});
    }
    return all;
}

std::vector<std::shared_ptr<TransferJob>> TransferQueue::jobsNow() const
{
    std::vector<std::shared_ptr<TransferJob>> all;
    all.reserve(m_transfers.size());
    for (const auto &one : m_transfers)
        all.push_back(one->job());
    return all;
}

std::vector<TransferQuestion> TransferQueue::questionsNow() const
{
    std::vector<TransferQuestion> all;
    for (const auto &one : m_transfers) {
        if (one->question())
            all.push_back(*one->question());
    }
    return all;
}

/// Called last by Transfer::end(); destroys the transfer.
void TransferQueue::ended(const QUuid &id, FinishedTransfer finished)
{
    const auto found = std::ranges::find(m_transfers, id, [](const auto &one) { return one->id(); });
    const std::unique_ptr<Transfer> over = std::move(*found);
    m_transfers.erase(found);
    const QUuid pane = finished.pane;
    publishAll();
    publish(lastFinished, std::optional(std::move(finished)));
    startNext(pane);
}

void TransferQueue::startNext(const QUuid &pane)
{
    const auto next = std::ranges::find(m_waiting, pane, [](const Waiting &one) { return one.request.pane; });
    if (next == m_waiting.end() || atWork(pane))
        return;
    Waiting starting = std::move(*next);
    m_waiting.erase(next);
    begin(starting.id, std::move(starting.request));
    publishAll();
}

} // namespace brellin

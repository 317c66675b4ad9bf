#include "Transfers/TransferJob.h"

#include "Base/German.h"
#include "Transfers/TransferTexts.h"

#include <algorithm>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds refreshing{200};
/// Averaging window of the rate.
constexpr std::chrono::seconds rateWindow{3};

} // namespace

TransferJob::TransferJob(Start start)
    : id(start.id)
    , pane(start.pane)
    , move(start.kind == TransferKind::Move)
    , destination(std::move(start.destination))
    , destName(std::move(start.destName))
    , count(start.count)
    , state(std::make_shared<TransferState>())
{
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] { refresh(); });
    m_timer.start(refreshing);
    publish(detailText, detail());
}

void TransferJob::plan(std::size_t steps)
{
    publish(count, static_cast<int>(steps));
}

void TransferJob::begin(std::size_t steps, const TransferSize &total)
{
    plan(steps);
    publish(totalBytes, total.bytes);
    publish(totalFiles, total.files);
    publish(measuring, false);
    if (!paused.get())
        m_activeSince = Clock::now();
    refresh();
}

std::chrono::milliseconds TransferJob::active() const
{
    const auto now = m_activeSince ? Clock::now() - *m_activeSince : Clock::duration::zero();
    return m_activeBefore + std::chrono::duration_cast<std::chrono::milliseconds>(now);
}

void TransferJob::refresh()
{
    const TransferState::Progress progress = state->progress();
    publish(bytes, progress.bytes());
    publish(files, progress.files);
    publish(currentName, progress.name);
    publish(rate, measureRate(progress.bytes()));
    publish(detailText, detail());
}

std::int64_t TransferJob::measureRate(std::int64_t now)
{
    if (measuring.get() || paused.get())
        return 0;
    m_samples.push_back({Clock::now(), now});
    while (m_samples.back().when - m_samples.front().when > rateWindow)
        m_samples.pop_front();
    const std::chrono::duration<double> span = m_samples.back().when - m_samples.front().when;
    if (span < std::chrono::seconds(1))
        return 0;
    return static_cast<std::int64_t>(static_cast<double>(now - m_samples.front().bytes) / span.count());
}

double TransferJob::fraction() const
{
    if (totalBytes.get() <= 0)
        return 0;
    return std::clamp(static_cast<double>(bytes.get()) / static_cast<double>(totalBytes.get()), 0.0, 1.0);
}

QString TransferJob::title() const
{
    return transferTitle(move ? TransferKind::Move : TransferKind::Copy, count.get(), destName);
}

QString TransferJob::detail() const
{
    return ProgressLine{measuring.get(),  bytes.get(), totalBytes.get(), files.get(),
                        totalFiles.get(), active(),    paused.get(),     state->progress().flushing}
        .text();
}

QString TransferJob::rateText() const
{
    return rate.get() > 0 ? sizeText(rate.get()) + QStringLiteral("/s") : QString();
}

void TransferJob::cancel()
{
    state->cancel();
    publish(cancelling, true);
}

void TransferJob::setPaused(bool on)
{
    if (on == paused.get())
        return;
    state->setPaused(on);
    publish(paused, on);
    if (on) {
        m_activeBefore = active();
        m_activeSince.reset();
    } else if (!measuring.get()) {
        m_activeSince = Clock::now();
    }
    m_samples.clear();
    refresh();
}

} // namespace brellin

#include "Transfers/TransferState.h"

#include <algorithm>
#include <chrono>

namespace brellin {

TransferState::Progress TransferState::progress() const
{
    const std::scoped_lock lock(m_mutex);
    return m_progress;
}

void TransferState::cancel()
{
    const std::scoped_lock lock(m_mutex);
    m_control.cancel();
    m_progress.cancelled = true;
    m_changed.notify_all();
}

void TransferState::setPaused(bool paused)
{
    const std::scoped_lock lock(m_mutex);
    m_progress.paused = paused;
    m_changed.notify_all();
}

void TransferState::beginEntry(const QString &name)
{
    const std::scoped_lock lock(m_mutex);
    m_progress.name = name;
}

void TransferState::advance(const QString &name, std::int64_t bytes, std::int64_t files)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_progress.name = name;
        m_progress.inItem = bytes;
        m_progress.files = m_filesBefore + files;
    }
    waitWhilePaused();
}

void TransferState::waitWhilePaused()
{
    constexpr std::chrono::milliseconds rhythm{50}; // poll, since cancelling through the control does not notify
    std::unique_lock lock(m_mutex);
    while (m_progress.paused && !m_control.cancelled())
        m_changed.wait_for(lock, rhythm);
}

void TransferState::setFlushing(bool flushing)
{
    const std::scoped_lock lock(m_mutex);
    m_progress.flushing = flushing;
}

void TransferState::finishStep(const TransferSize &size)
{
    const std::scoped_lock lock(m_mutex);
    m_progress.itemBase += size.bytes;
    m_progress.inItem = 0;
    m_progress.files = std::max(m_progress.files, m_filesBefore + size.files);
    m_filesBefore = m_progress.files;
}

} // namespace brellin

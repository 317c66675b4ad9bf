#include "Disk/CopyEntryProgress.h"

#include <utility>

namespace brellin {

CopyPulse::CopyPulse(const CopyOptions &options, std::function<Location()> current)
    : m_options(options)
    , m_current(std::move(current))
{
}

Result<void> CopyPulse::beat()
{
    if (isCancelled())
        return failure(Failure::cancelled());
    if (!m_options.progress)
        return {};
    if (std::this_thread::get_id() == m_reporter)
        report();
    else
        awaitReport();
    return isCancelled() ? failure(Failure::cancelled()) : Result<void>();
}

bool CopyPulse::isCancelled() const
{
    return m_stopped.load(std::memory_order_relaxed) || (m_options.control && m_options.control->cancelled());
}

void CopyPulse::report()
{
    const auto now = Clock::now();
    if (now - m_reported < m_options.interval)
        return;
    m_reported = now;
    setReporting(true);
    m_options.progress(soFar());
    setReporting(false);
}

void CopyPulse::setReporting(bool reporting)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_reporting = reporting;
    }
    m_reportEnded.notify_all();
}

void CopyPulse::awaitReport()
{
    std::unique_lock lock(m_mutex);
    m_reportEnded.wait(lock, [this] { return !m_reporting; });
}

CopyProgress CopyPulse::soFar() const
{
    return {m_bytes.load(std::memory_order_relaxed), m_files.load(std::memory_order_relaxed), m_current()};
}

CopyProgress CopyPulse::finished()
{
    CopyProgress done = soFar();
    if (m_options.progress)
        m_options.progress(done);
    return done;
}

} // namespace brellin

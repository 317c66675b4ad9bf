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
    if (m_stopped.load(std::memory_order_relaxed) || (m_options.control && m_options.control->cancelled()))
        return failure(Failure::cancelled());
    if (!m_options.progress || std::this_thread::get_id() != m_reporter)
        return {};
    const auto now = Clock::now();
    if (now - m_reported < m_options.interval)
        return {};
    m_reported = now;
    m_options.progress(soFar());
    return {};
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

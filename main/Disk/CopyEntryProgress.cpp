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
    if (m_options.control && m_options.control->cancelled())
        return failure(Failure::cancelled());
    if (!m_options.progress)
        return {};
    const auto now = Clock::now();
    if (now - m_reported < m_options.interval)
        return {};
    m_reported = now;
    m_progress.current = m_current();
    m_options.progress(m_progress);
    return {};
}

CopyProgress CopyPulse::finished()
{
    if (m_options.progress) {
        m_progress.current = m_current();
        m_options.progress(m_progress);
    }
    return m_progress;
}

} // namespace brellin

#include "Agent/Schedule.h"

namespace brellin {

bool isScanDue(int intervalHours, const std::optional<Instant> &lastRun, Instant now)
{
    if (intervalHours <= 0)
        return false;
    return !lastRun || *lastRun > now || *lastRun <= now - std::chrono::hours(intervalHours);
}

Schedule::Schedule(std::function<void()> tick)
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(tick));
}

void Schedule::arm(int intervalHours)
{
    m_timer.stop();
    if (intervalHours > 0)
        m_timer.start(period);
}

} // namespace brellin

#pragma once

#include "Base/Instant.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace brellin {

/// Whether a scan is due: never without an interval, always without a last run (or with one that lies in the future), else
/// when the interval has passed.
bool isScanDue(int intervalHours, const std::optional<Instant> &lastRun, Instant now);

/// The agent's pulse: a look every ten minutes whether something is due. Missed looks (a sleeping laptop) are not made up
/// for.
class Schedule {
public:
    static constexpr std::chrono::seconds period{600};

    /// `tick` is called at each look; it outlives the schedule.
    explicit Schedule(std::function<void()> tick);

    /// Starts again from now, or stops where there is no interval.
    void arm(int intervalHours);
    bool isArmed() const { return m_timer.isActive(); }

private:
    QTimer m_timer;
};

} // namespace brellin

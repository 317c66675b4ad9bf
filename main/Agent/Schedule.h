#pragma once

#include "Base/Instant.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace brellin {

/// Whether a scan is due: never without an interval, always without a last run (or with one in the future), otherwise
/// once the interval has passed.
bool isScanDue(int intervalHours, const std::optional<Instant> &lastRun, Instant now);

/// A timer that calls the agent every ten minutes. Ticks missed while the machine sleeps are not repeated.
class Schedule {
public:
    static constexpr std::chrono::seconds period{600};

    /// `tick` is called every period; whatever it refers to must outlive the schedule.
    explicit Schedule(std::function<void()> tick);

    /// Restarts the period; stops if the interval is 0.
    void arm(int intervalHours);

private:
    QTimer m_timer;
};

} // namespace brellin

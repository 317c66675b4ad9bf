#include "Base/Instant.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>

namespace brellin {

using namespace std::chrono;

namespace {

constexpr sys_days storedEpoch = 2001y / January / 1;

} // namespace

Instant instantFrom(const timespec &time)
{
    return Instant(seconds(time.tv_sec) + nanoseconds(time.tv_nsec));
}

double storedSeconds(Instant instant)
{
    return duration<double>(instant - Instant(storedEpoch)).count();
}

Instant instantFromStoredSeconds(double value)
{
    // Microseconds: finer digits of a double of this size are noise.
    return Instant(storedEpoch) + microseconds(std::llround(value * 1e6));
}

QString isoText(Instant instant)
{
    const auto whole = floor<milliseconds>(instant);
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(whole.time_since_epoch().count(), Qt::UTC);
    return time.toString(time.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
}

std::optional<Instant> instantFromIso(const QString &text)
{
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        return std::nullopt;
    return Instant(milliseconds(time.toMSecsSinceEpoch()));
}

} // namespace brellin

#include "Base/Instant.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace brellin {

using namespace std::chrono;

namespace {

constexpr sys_days storedEpoch = 2001y / January / 1;

/// Clamps to the range of nanoseconds (1677 to 2262), since overflow would give a time in another century.
Instant clamped(seconds whole, nanoseconds part)
{
    constexpr auto first = ceil<seconds>(Instant::min().time_since_epoch());
    constexpr auto last = floor<seconds>(Instant::max().time_since_epoch()) - seconds(1);
    if (whole < first)
        return Instant::min();
    if (whole > last)
        return Instant::max();
    return Instant(whole + std::clamp<nanoseconds>(part, nanoseconds(0), seconds(1)));
}

} // namespace

Instant instantFrom(const timespec &time)
{
    return clamped(seconds(time.tv_sec), nanoseconds(time.tv_nsec));
}

Instant instantFromMilliseconds(qint64 milliseconds)
{
    const std::chrono::milliseconds since(milliseconds);
    return clamped(floor<seconds>(since), since - floor<seconds>(since));
}

double storedSeconds(Instant instant)
{
    return duration<double>(instant - Instant(storedEpoch)).count();
}

Instant instantFromStoredSeconds(double seconds)
{
    // Round to microseconds: a double of this size has no finer precision.
    return Instant(storedEpoch) + microseconds(std::llround(seconds * 1e6));
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
    return instantFromMilliseconds(time.toMSecsSinceEpoch());
}

} // namespace brellin

#pragma once

#include <QString>

#include <chrono>
#include <ctime>
#include <optional>

namespace brellin {

/// A moment in time, in nanoseconds since 1970-01-01 00:00 UTC (a file system's resolution).
using Instant = std::chrono::sys_time<std::chrono::nanoseconds>;

/// From a file's time, and from milliseconds since 1970. Moments that an instant does not reach (before 1677, after 2262) are
/// the first or the last one.
Instant instantFrom(const timespec &time);
Instant instantFromMilliseconds(qint64 milliseconds);

/// Seconds since 2001-01-01 00:00 UTC, the number in which stored records keep a date.
double storedSeconds(Instant instant);
Instant instantFromStoredSeconds(double seconds);

/// "2026-09-03T14:05:09Z"; fractions of a second only where there are any ("…09.250Z").
QString isoText(Instant instant);
/// A date that no instant reaches ("9999-12-31T…") is the last one.
std::optional<Instant> instantFromIso(const QString &text);

} // namespace brellin

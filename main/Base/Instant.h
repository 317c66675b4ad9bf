#pragma once

#include <QString>

#include <chrono>
#include <ctime>
#include <optional>

namespace brellin {

/// A moment in time, in nanoseconds since 1970-01-01 00:00 UTC (a file system's resolution).
using Instant = std::chrono::sys_time<std::chrono::nanoseconds>;

Instant instantFrom(const timespec &time);

/// Seconds since 2001-01-01 00:00 UTC, the number in which stored records keep a date.
double storedSeconds(Instant instant);
Instant instantFromStoredSeconds(double seconds);

/// "2026-09-03T14:05:09Z"; fractions of a second only where there are any ("…09.250Z").
QString isoText(Instant instant);
std::optional<Instant> instantFromIso(const QString &text);

} // namespace brellin

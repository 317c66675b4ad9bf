#pragma once

#include <QString>

#include <chrono>
#include <ctime>
#include <optional>

namespace brellin {

/// A point in time in nanoseconds since 1970-01-01 00:00 UTC, the resolution of file systems.
using Instant = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Convert a file's time, and milliseconds since 1970. Clamp to the range of an instant (1677 to 2262).
Instant instantFrom(const timespec &time);
Instant instantFromMilliseconds(qint64 milliseconds);

/// Seconds since 2001-01-01 00:00 UTC, the form of dates in stored records.
double storedSeconds(Instant instant);
Instant instantFromStoredSeconds(double seconds);

/// "2026-09-03T14:05:09Z"; with fractions of a second only if there are any ("…09.250Z").
QString isoText(Instant instant);
/// Clamps dates beyond the range of an instant ("9999-12-31T…").
std::optional<Instant> instantFromIso(const QString &text);

} // namespace brellin

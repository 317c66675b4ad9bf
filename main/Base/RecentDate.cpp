#include "Base/RecentDate.h"

#include "Base/German.h"

namespace brellin {

namespace {

QString timeOfDay(Instant instant)
{
    return longDateTime(instant).section(QStringLiteral(", "), 1);
}

} // namespace

QString recentDate(Instant instant, QDate today, OlderDay otherwise)
{
    const qint64 days = localDay(instant).daysTo(today);
    if (days == 0 || days == 1)
        return (days == 0 ? QStringLiteral("heute, ") : QStringLiteral("gestern, ")) + timeOfDay(instant);
    switch (otherwise) {
    case OlderDay::Short:
        return german().toString(localDay(instant), QStringLiteral("d. MMM yyyy"));
    case OlderDay::Long:
        return longDate(instant);
    case OlderDay::LongWithTime:
        break;
    }
    return longDateTime(instant);
}

QString recentDate(Instant instant, Instant now, OlderDay otherwise)
{
    return recentDate(instant, localDay(now), otherwise);
}

} // namespace brellin

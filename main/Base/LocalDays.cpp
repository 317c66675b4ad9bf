#include "Base/LocalDays.h"

#include "Base/German.h"

#include <QDateTime>

#include <iterator>

namespace brellin {

QDate LocalDays::of(Instant instant)
{
    auto after = m_days.upper_bound(instant);
    if (after != m_days.begin() && instant < std::prev(after)->second.end)
        return std::prev(after)->second.date;
    const QDate date = localDay(instant);
    const auto beginning = [](const QDate &day) {
        return Instant(std::chrono::milliseconds(day.startOfDay().toMSecsSinceEpoch()));
    };
    m_days.insert_or_assign(beginning(date), Day{beginning(date.addDays(1)), date});
    return date;
}

} // namespace brellin

#pragma once

#include "Base/Instant.h"

#include <QDate>

#include <map>

namespace brellin {

/// Local calendar days of many instants. Caches each day, since every time zone conversion costs several file
/// operations.
class LocalDays {
public:
    QDate of(Instant instant);

private:
    struct Day {
        Instant end;
        QDate date;
    };
    std::map<Instant, Day> m_days; ///< by the start of the day
};

} // namespace brellin

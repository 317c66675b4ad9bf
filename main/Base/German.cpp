#include "Base/German.h"

#include <QDateTime>

#include <array>

namespace brellin {

namespace {

QDateTime localTime(Instant instant)
{
    const auto whole = std::chrono::floor<std::chrono::milliseconds>(instant);
    return QDateTime::fromMSecsSinceEpoch(whole.time_since_epoch().count());
}

} // namespace

const QLocale &german()
{
    static const QLocale locale(QLocale::German, QLocale::Germany);
    return locale;
}

QDate localDay(Instant instant)
{
    return localTime(instant).date();
}

QString longDate(Instant instant)
{
    return german().toString(localDay(instant), QStringLiteral("d. MMMM yyyy"));
}

QString longDateTime(Instant instant)
{
    return german().toString(localTime(instant), QStringLiteral("d. MMMM yyyy, HH:mm"));
}

QString sizeText(qint64 bytes)
{
    struct Unit {
        const char16_t *name;
        int decimals;
    };
    constexpr std::array units{Unit{u"Byte", 0}, Unit{u"KB", 0}, Unit{u"MB", 1},
                               Unit{u"GB", 2},   Unit{u"TB", 2}, Unit{u"PB", 2}};
    std::size_t unit = 0;
    auto value = static_cast<double>(bytes);
    // Switch to the next unit if rounding would reach 1,000: 999.6 KB is 1 MB.
    while (unit + 1 < units.size() && value >= (unit == 0 ? 1000.0 : 999.5)) {
        value /= 1000.0;
        ++unit;
    }
    QString number = german().toString(value, 'f', units[unit].decimals);
    const QString point = german().decimalPoint();
    if (number.contains(point)) {
        while (number.endsWith(u'0'))
            number.chop(1);
        if (number.endsWith(point))
            number.chop(point.size());
    }
    return number + u' ' + QString::fromUtf16(units[unit].name);
}

QString counted(qint64 count, const QString &one, const QString &many)
{
    return german().toString(count) + u' ' + (count == 1 ? one : many);
}

} // namespace brellin

#include "System/PlainSetting.h"

#include <algorithm>
#include <cmath>

namespace brellin {

namespace {

/// JSON does not distinguish integers from other numbers.
std::optional<double> number(const UserDefaults &defaults, const QString &key)
{
    const QVariant value = defaults.value(key).value_or(QVariant());
    const int type = value.metaType().id();
    const bool isNumber = type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
    return isNumber && std::isfinite(value.toDouble()) ? std::optional(value.toDouble()) : std::nullopt;
}

template <class T>
T ofType(const UserDefaults &defaults, const QString &key, const T &usual)
{
    const QVariant value = defaults.value(key).value_or(QVariant());
    return value.metaType() == QMetaType::fromType<T>() ? value.value<T>() : usual;
}

} // namespace

bool plainSetting(const UserDefaults &defaults, const QString &key, bool usual)
{
    return ofType(defaults, key, usual);
}

int plainSetting(const UserDefaults &defaults, const QString &key, int usual, int least, int most)
{
    const std::optional<double> value = number(defaults, key);
    const bool fits = value && *value == std::floor(*value) && *value >= least && *value <= most;
    return fits ? static_cast<int>(*value) : usual;
}

double plainSetting(const UserDefaults &defaults, const QString &key, double usual)
{
    return number(defaults, key).value_or(usual);
}

QString plainSetting(const UserDefaults &defaults, const QString &key, const QString &usual)
{
    return ofType(defaults, key, usual);
}

QStringList plainSetting(const UserDefaults &defaults, const QString &key, const QStringList &usual)
{
    const QVariant value = defaults.value(key).value_or(QVariant());
    if (value.metaType().id() == QMetaType::QStringList)
        return value.toStringList();
    const QVariantList list = ofType(defaults, key, QVariantList());
    const bool texts = !list.isEmpty() && std::ranges::all_of(list, [](const QVariant &one) {
        return one.metaType().id() == QMetaType::QString;
    });
    return texts ? value.toStringList() : usual;
}

std::optional<QDateTime> plainDate(const UserDefaults &defaults, const QString &key)
{
    const QDateTime date = ofType(defaults, key, QDateTime());
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace brellin

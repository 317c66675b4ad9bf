#include "System/StoredKeys.h"

namespace brellin {

JsonResult<void> requireKeys(const QJsonValue &record, std::initializer_list<const char *> keys)
{
    for (const char *const key : keys) {
        const QJsonValue value = record[QLatin1StringView(key)];
        if (record.isObject() && (value.isUndefined() || value.isNull()))
            return std::unexpected(JsonError{QString::fromLatin1(key), QStringLiteral("fehlt")});
    }
    return {};
}

JsonResult<void> requireKeysOfEach(const QJsonValue &record, const char *list, std::initializer_list<const char *> keys)
{
    const QJsonArray all = record[QLatin1StringView(list)].toArray();
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (const JsonResult<void> whole = requireKeys(all.at(i), keys); !whole)
            return std::unexpected(whole.error().within(QStringLiteral("[%1]").arg(i)).within(QLatin1StringView(list)));
    }
    return {};
}

} // namespace brellin

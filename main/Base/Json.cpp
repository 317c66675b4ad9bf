#include "Base/Json.h"

#include <QJsonDocument>

#include <cmath>

namespace brellin {

namespace {

constexpr QLatin1StringView idKey("id");

std::unexpected<JsonError> expected(const QString &what)
{
    return std::unexpected(JsonError{{}, what});
}

} // namespace

JsonError JsonError::within(const QString &outer) const
{
    if (field.isEmpty())
        return {outer, reason};
    return {field.startsWith(u'[') ? outer + field : outer + u'.' + field, reason};
}

QString JsonError::sentence() const
{
    if (field.isEmpty())
        return reason + u'.';
    return QStringLiteral("Feld „%1“: %2.").arg(field, reason);
}

QJsonValue toJson(bool value, JsonDates)
{
    return value;
}

QJsonValue toJson(const QString &value, JsonDates)
{
    return value;
}

QJsonValue toJson(const QUuid &value, JsonDates)
{
    return value.toString(QUuid::WithoutBraces).toUpper();
}

QJsonValue toJson(const Location &value, JsonDates)
{
    return textOf(value);
}

QJsonValue toJson(Instant value, JsonDates dates)
{
    return dates == JsonDates::Iso ? QJsonValue(isoText(value)) : QJsonValue(storedSeconds(value));
}

JsonResult<void> readJson(const QJsonValue &json, bool &value)
{
    if (!json.isBool())
        return expected(QStringLiteral("hier gehört true oder false hin"));
    value = json.toBool();
    return {};
}

JsonResult<void> readJson(const QJsonValue &json, QString &value)
{
    if (!json.isString())
        return expected(QStringLiteral("hier gehört ein Text hin"));
    value = json.toString();
    return {};
}

JsonResult<void> readJson(const QJsonValue &json, QUuid &value)
{
    const QUuid id = QUuid::fromString(json.toString());
    if (!json.isString() || id.isNull())
        return expected(QStringLiteral("hier gehört eine UUID hin"));
    value = id;
    return {};
}

JsonResult<void> readJson(const QJsonValue &json, Location &value)
{
    if (!json.isString())
        return expected(QStringLiteral("hier gehört ein Pfad hin"));
    value = locationFromText(json.toString());
    return {};
}

JsonResult<void> readJson(const QJsonValue &json, Instant &value)
{
    if (json.isDouble()) {
        // Larger values overflow the nanoseconds of an instant.
        if (std::abs(json.toDouble()) > 8e9)
            return expected(QStringLiteral("dieses Datum liegt zu weit weg"));
        value = instantFromStoredSeconds(json.toDouble());
        return {};
    }
    if (const std::optional<Instant> read = json.isString() ? instantFromIso(json.toString()) : std::nullopt) {
        value = *read;
        return {};
    }
    return expected(QStringLiteral("hier gehört ein Datum hin"));
}

JsonResult<qint64> readJsonInteger(const QJsonValue &json, qint64 least, qint64 most)
{
    constexpr qint64 none = std::numeric_limits<qint64>::min();
    if (!json.isDouble() || (json.toInteger(none) == none && json.toInteger(0) == 0))
        return expected(QStringLiteral("hier gehört eine ganze Zahl hin"));
    const qint64 number = json.toInteger();
    if (number < least || number > most)
        return expected(QStringLiteral("die Zahl %1 ist hier nicht möglich").arg(number));
    return number;
}

JsonError jsonWordError(const QJsonValue &json)
{
    if (!json.isString())
        return {{}, QStringLiteral("hier gehört ein Text hin")};
    return {{}, QStringLiteral("„%1“ gibt es hier nicht").arg(json.toString())};
}

bool lacksJsonId(const QJsonObject &record)
{
    const QJsonValue id = record.value(idKey);
    return id.isUndefined() || id.isNull() || id.toString() == u"00000000-0000-0000-0000-000000000000";
}

QJsonObject withJsonId(QJsonObject record, const QUuid &fresh)
{
    record.insert(idKey, toJson(fresh));
    return record;
}

QUuid jsonIdOf(const QJsonObject &record, qsizetype place)
{
    static const QUuid space(u"3f0c5a52-6d0e-4c0b-9b8e-6a1f3a7c2d41"_qs);
    return QUuid::createUuidV5(space, jsonText(record) + QByteArray::number(place));
}

QByteArray jsonText(const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact);
}

JsonResult<QJsonValue> parseJson(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        return expected(QStringLiteral("das ist kein gültiges JSON (Zeichen %1)").arg(error.offset));
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

} // namespace brellin

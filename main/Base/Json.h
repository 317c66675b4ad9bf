#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QUuid>

#include <array>
#include <concepts>
#include <limits>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

/// Conversion of records to and from JSON. A record type declares its fields once:
///
///     template <> struct JsonTable<RuleCondition> {
///         static constexpr std::tuple fields{field("id", &RuleCondition::id), field("kind", &RuleCondition::kind)};
///     };
///
/// and an enumeration the word of each value:
///
///     template <> struct JsonWords<RuleAction> {
///         static constexpr std::array words{std::pair{RuleAction::Move, u"move"}, …};
///     };
///
/// Reading ignores unknown keys. A missing key leaves the member at its default (an "id" is created). A value of the wrong
/// type is an error that names the field. Expensive to compile: include it in the few sources that read or write records,
/// not in the headers that declare them.
namespace brellin {

/// The format of dates: seconds since 2001 in stored records, ISO 8601 in printed ones. Both are accepted when reading.
enum class JsonDates { Stored, Iso };

/// The value that could not be read, and why.
struct JsonError {
    QString field;  ///< "conditions[2].kind"; empty for the value itself
    QString reason; ///< "„foo“ ist kein erlaubter Wert", without a full stop

    bool operator==(const JsonError &) const = default;
    /// Prefixes the field with the name of an outer one.
    JsonError within(const QString &outer) const;
    /// "Feld „…“: …"
    QString sentence() const;
};

template <class T>
using JsonResult = std::expected<T, JsonError>;

template <class Record, class Member>
struct JsonField {
    const char *key;
    Member Record::*member;
};
template <class Record, class Member>
constexpr JsonField<Record, Member> field(const char *key, Member Record::*member)
{
    return {key, member};
}

template <class Record>
struct JsonTable;
template <class Enum>
struct JsonWords;

template <class T>
concept JsonRecord = requires { JsonTable<T>::fields; };
/// A record with an id of its own.
template <class T>
concept JsonIdentified = JsonRecord<T> && requires(T record) {
    { record.id } -> std::same_as<QUuid &>;
};
template <class T>
concept JsonEnum = requires { JsonWords<T>::words; };

QJsonValue toJson(bool value, JsonDates dates = JsonDates::Stored);
QJsonValue toJson(const QString &value, JsonDates dates = JsonDates::Stored);
QJsonValue toJson(const QUuid &value, JsonDates dates = JsonDates::Stored);
QJsonValue toJson(const Location &value, JsonDates dates = JsonDates::Stored);
QJsonValue toJson(Instant value, JsonDates dates = JsonDates::Stored);
JsonResult<void> readJson(const QJsonValue &json, bool &value);
JsonResult<void> readJson(const QJsonValue &json, QString &value);
JsonResult<void> readJson(const QJsonValue &json, QUuid &value);
JsonResult<void> readJson(const QJsonValue &json, Location &value);
JsonResult<void> readJson(const QJsonValue &json, Instant &value);
/// Reads a whole number from `least` to `most`, inclusive.
JsonResult<qint64> readJsonInteger(const QJsonValue &json, qint64 least, qint64 most);
JsonError jsonWordError(const QJsonValue &json);
/// Whether a record's "id" is missing or null (the null UUID stored by earlier versions).
bool lacksJsonId(const QJsonObject &record);
/// The record's object with `fresh` as its "id".
QJsonObject withJsonId(QJsonObject record, const QUuid &fresh);
/// An id derived from a record's content and position, so that each reading gives the same id until the record is
/// stored with it.
QUuid jsonIdOf(const QJsonObject &record, qsizetype place);

template <class Number>
    requires(std::integral<Number> && !std::same_as<Number, bool>)
QJsonValue toJson(Number value, JsonDates = JsonDates::Stored)
{
    return QJsonValue(static_cast<qint64>(value));
}

template <class Number>
    requires(std::integral<Number> && !std::same_as<Number, bool>)
JsonResult<void> readJson(const QJsonValue &json, Number &value)
{
    constexpr auto most = static_cast<quint64>(std::numeric_limits<Number>::max());
    constexpr qint64 bound = std::numeric_limits<qint64>::max();
    const JsonResult<qint64> number =
        readJsonInteger(json, std::is_signed_v<Number> ? static_cast<qint64>(std::numeric_limits<Number>::min()) : 0,
                        most > static_cast<quint64>(bound) ? bound : static_cast<qint64>(most));
    if (!number)
        return std::unexpected(number.error());
    value = static_cast<Number>(*number);
    return {};
}

// Forward declarations, so that records containing lists of records resolve.
template <JsonEnum Enum>
QJsonValue toJson(Enum value, JsonDates dates = JsonDates::Stored);
template <JsonRecord Record>
QJsonValue toJson(const Record &record, JsonDates dates = JsonDates::Stored);
template <class T>
QJsonValue toJson(const std::vector<T> &list, JsonDates dates = JsonDates::Stored);
template <class T>
QJsonValue toJson(const std::optional<T> &value, JsonDates dates = JsonDates::Stored);
template <JsonEnum Enum>
JsonResult<void> readJson(const QJsonValue &json, Enum &value);
template <JsonRecord Record>
JsonResult<void> readJson(const QJsonValue &json, Record &record);
template <class T>
JsonResult<void> readJson(const QJsonValue &json, std::vector<T> &list);
template <class T>
JsonResult<void> readJson(const QJsonValue &json, std::optional<T> &value);

template <JsonEnum Enum>
QJsonValue toJson(Enum value, JsonDates)
{
    for (const auto &[known, word] : JsonWords<Enum>::words) {
        if (known == value)
            return QString::fromUtf16(word);
    }
    return {};
}

template <JsonEnum Enum>
JsonResult<void> readJson(const QJsonValue &json, Enum &value)
{
    const QString text = json.toString();
    for (const auto &[known, word] : JsonWords<Enum>::words) {
        if (json.isString() && text == QStringView(word)) {
            value = known;
            return {};
        }
    }
    return std::unexpected(jsonWordError(json));
}

template <class T>
QJsonValue toJson(const std::optional<T> &value, JsonDates dates)
{
    return value ? toJson(*value, dates) : QJsonValue(QJsonValue::Null);
}

template <class T>
JsonResult<void> readJson(const QJsonValue &json, std::optional<T> &value)
{
    value.reset();
    return json.isNull() ? JsonResult<void>() : readJson(json, value.emplace());
}

template <class T>
QJsonValue toJson(const std::vector<T> &list, JsonDates dates)
{
    QJsonArray array;
    for (const T &one : list)
        array.append(toJson(one, dates));
    return array;
}

/// An element of a list, with a derived id if its record lacks one.
template <class T>
QJsonValue jsonElement(const QJsonArray &list, qsizetype place)
{
    if constexpr (JsonIdentified<T>) {
        if (const QJsonValue json = list.at(place); json.isObject() && lacksJsonId(json.toObject()))
            return withJsonId(json.toObject(), jsonIdOf(json.toObject(), place));
    }
    return list.at(place);
}

/// Reads one element of a list; errors name its index.
template <class T>
JsonResult<void> readJsonElement(const QJsonArray &list, qsizetype place, T &value)
{
    if (const JsonResult<void> read = readJson(jsonElement<T>(list, place), value); !read)
        return std::unexpected(read.error().within(QStringLiteral("[%1]").arg(place)));
    return {};
}

template <class T>
JsonResult<void> readJson(const QJsonValue &json, std::vector<T> &list)
{
    if (!json.isArray())
        return std::unexpected(JsonError{{}, QStringLiteral("hier gehört eine Liste hin")});
    list.clear();
    const QJsonArray array = json.toArray();
    list.reserve(static_cast<std::size_t>(array.size()));
    for (qsizetype i = 0; i < array.size(); ++i) {
        if (JsonResult<void> read = readJsonElement(array, i, list.emplace_back()); !read)
            return read;
    }
    return {};
}

template <JsonRecord Record>
QJsonValue toJson(const Record &record, JsonDates dates)
{
    QJsonObject object;
    const auto write = [&](const auto &entry) {
        const QJsonValue value = toJson(record.*(entry.member), dates);
        if (!value.isNull()) // omit absent optionals
            object.insert(QLatin1StringView(entry.key), value);
    };
    std::apply([&](const auto &...entries) { (write(entries), ...); }, JsonTable<Record>::fields);
    return object;
}

template <JsonRecord Record>
JsonResult<void> readJson(const QJsonValue &json, Record &record)
{
    if (!json.isObject())
        return std::unexpected(JsonError{{}, QStringLiteral("hier gehört ein Objekt hin")});
    QJsonObject object = json.toObject();
    if constexpr (JsonIdentified<Record>) {
        if (lacksJsonId(object))
            object = withJsonId(std::move(object), QUuid::createUuid());
    }
    JsonResult<void> result;
    const auto read = [&](const auto &entry) {
        const QJsonValue value = object.value(QLatin1StringView(entry.key));
        if (!result || value.isUndefined() || value.isNull())
            return;
        if (const JsonResult<void> one = readJson(value, record.*(entry.member)); !one)
            result = std::unexpected(one.error().within(QLatin1StringView(entry.key)));
    };
    std::apply([&](const auto &...entries) { (read(entries), ...); }, JsonTable<Record>::fields);
    return result;
}

/// A JSON object or array as compact text.
QByteArray jsonText(const QJsonValue &value);

/// Reads a record or a list of records from JSON text.
template <class T>
JsonResult<T> fromJsonText(const QByteArray &text);

/// Parses JSON text; an error gives the position.
JsonResult<QJsonValue> parseJson(const QByteArray &text);

template <class T>
JsonResult<T> fromJsonText(const QByteArray &text)
{
    const JsonResult<QJsonValue> json = parseJson(text);
    if (!json)
        return std::unexpected(json.error());
    JsonResult<T> value(std::in_place);
    if (const JsonResult<void> read = readJson(*json, *value); !read)
        return std::unexpected(read.error());
    return value;
}

} // namespace brellin

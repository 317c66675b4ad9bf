#pragma once

#include "Base/JsonText.h"
#include "System/StoredCondition.h"
#include "System/UserDefaults.h"

#include <functional>
#include <vector>

namespace brellin {

/// Whether a list still has its meaning without one of its records. If not (a lost rule's files would fall to the next
/// rule, a lost profile would leave its folder unprotected), one bad record makes the whole list damaged, and the list
/// is not changed until the user has decided. Specialise beside the record's JSON table.
template <class Record>
inline constexpr bool recordsStandAlone = true;

/// Keys a stored record must have although new records have defaults for them: without them the agent would touch what
/// the complete record leaves alone. Specialise beside the record's JSON table; fails with the first missing key.
template <class Record>
struct DecisiveKeys {
    static JsonResult<void> check(const QJsonValue &) { return {}; }
};

/// Reads one element of a stored list.
template <class Record>
JsonResult<void> readStored(const QJsonArray &list, qsizetype place, Record &record)
{
    if (const JsonResult<void> whole = DecisiveKeys<Record>::check(list.at(place)); !whole)
        return std::unexpected(whole.error().within(QStringLiteral("[%1]").arg(place)));
    return readJsonElement(list, place, record);
}

/// The result of reading a list.
template <class Record>
struct StoredList {
    StoredState state = StoredState::Absent;
    std::vector<Record> records;
    QStringList lost; ///< what could not be read, and why: "Feld „[3].path“: …"

    /// Nothing of what was stored is missing.
    bool isWhole() const { return state == StoredState::Absent || state == StoredState::Whole; }
    /// There is a decodable list, possibly with records missing.
    bool isKnown() const { return state == StoredState::Whole || state == StoredState::Partly; }
    /// The records; `usual` if there is no list or it cannot be decoded.
    std::vector<Record> value_or(std::vector<Record> usual) const & { return isKnown() ? records : std::move(usual); }
    std::vector<Record> value_or(std::vector<Record> usual) &&
    {
        return isKnown() ? std::move(records) : std::move(usual);
    }
};

/// Decodes a list. Leaves out bad records if records stand alone.
template <class Record>
StoredList<Record> decodedList(const QByteArray &text)
{
    StoredList<Record> list{StoredState::Whole, {}, {}};
    const auto damaged = [](const JsonError &why) {
        return StoredList<Record>{StoredState::Damaged, {}, {why.sentence()}};
    };
    const JsonResult<QJsonValue> json = parseJson(text);
    if (!json)
        return damaged(json.error());
    if (!json->isArray())
        return damaged(readJson(*json, list.records).error());
    const QJsonArray array = json->toArray();
    list.records.reserve(static_cast<std::size_t>(array.size()));
    for (qsizetype i = 0; i < array.size(); ++i) {
        Record one{};
        if (const JsonResult<void> read = readStored(array, i, one); read)
            list.records.push_back(std::move(one));
        else if (recordsStandAlone<Record>)
            list.lost << read.error().sentence();
        else
            return damaged(read.error());
    }
    if (list.lost.isEmpty())
        return list;
    list.state = StoredState::Partly;
    // All records unreadable is not the same as an empty list.
    if (list.records.empty())
        list.state = StoredState::Damaged;
    return list;
}

/// The list stored under a key.
template <class Record>
StoredList<Record> storedList(const UserDefaults &defaults, const QString &key)
{
    const Result<std::optional<QByteArray>> text = defaults.read(key);
    if (!text)
        return {StoredState::Unreadable, {}, {text.error().message}};
    return *text ? decodedList<Record>(**text) : StoredList<Record>();
}

/// The list, or a failure if it cannot be read completely and must not be acted on.
template <class Record>
Result<std::vector<Record>> wholeList(const UserDefaults &defaults, const QString &key, std::vector<Record> usual)
{
    const StoredList<Record> list = storedList<Record>(defaults, key);
    if (!list.isWhole())
        return failure(StoredCondition{key, defaults.fileOf(key), list.state, list.lost, false}.failure());
    return std::move(list).value_or(std::move(usual));
}

/// Returns what a change of a damaged list starts from: the last good version if it is whole, since it has the lost
/// records too; otherwise the records that could be decoded, from either version.
template <class Record>
StoredList<Record> mendedList(const UserDefaults &defaults, const QString &key, const StoredList<Record> &damaged)
{
    const std::optional<QByteArray> text = defaults.readLastGood(key).value_or(std::nullopt);
    const StoredList<Record> good = text ? decodedList<Record>(*text) : StoredList<Record>();
    return good.state == StoredState::Whole || !damaged.isKnown() ? good : damaged;
}

/// Changes the list stored under a key, based on its present content (nullopt: absent). If that cannot be decoded
/// completely, the change starts from `mendedList` (nullopt: nothing can be decoded), and the damaged text is kept aside.
/// Fails without a change for a damaged list whose records do not stand alone. `change` returns the new list, or nullopt
/// to leave it as it is. Returns what `change` returned.
template <class Record>
Result<std::optional<std::vector<Record>>>
changeList(UserDefaults &defaults, const QString &key,
           const std::function<std::optional<std::vector<Record>>(std::optional<std::vector<Record>>)> &change)
{
    std::optional<Failure> refused;
    std::optional<std::vector<Record>> changed;
    TRY(defaults.update(key, [&](const std::optional<QByteArray> &old) -> std::optional<UserDefaults::Change> {
        StoredList<Record> list = old ? decodedList<Record>(*old) : StoredList<Record>();
        const bool damaged = !list.isWhole();
        if (damaged && !recordsStandAlone<Record>) {
            refused = StoredCondition{key, defaults.fileOf(key), list.state, list.lost, false}.failure();
            return std::nullopt;
        }
        if (damaged)
            list = mendedList(defaults, key, list);
        changed = change(list.isKnown() ? std::optional(std::move(list.records)) : std::nullopt);
        if (!changed)
            return std::nullopt;
        QByteArray text;
        appendJson(text, *changed);
        return UserDefaults::Change{std::move(text), damaged};
    }));
    if (refused)
        return failure(*std::move(refused));
    return changed;
}

/// The same, if the new list does not matter.
template <class Record>
Result<void>
updateList(UserDefaults &defaults, const QString &key,
           const std::function<std::optional<std::vector<Record>>(std::optional<std::vector<Record>>)> &change)
{
    std::ignore = TRY(changeList<Record>(defaults, key, change));
    return {};
}

/// Replaces the whole list.
template <class Record>
Result<void> storeList(UserDefaults &defaults, const QString &key, const std::vector<Record> &list)
{
    return updateList<Record>(defaults, key, [&](const auto &) { return std::optional(list); });
}

} // namespace brellin

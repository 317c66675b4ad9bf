#include "System/StoredKind.h"

namespace brellin {

namespace {

using Checked = std::pair<StoredState, QStringList>;

Checked checkedJson(const QByteArray &text, bool (*fits)(const QJsonValue &))
{
    const JsonResult<QJsonValue> json = parseJson(text);
    if (!json)
        return {StoredState::Damaged, {json.error().sentence()}};
    return fits(*json) ? Checked{StoredState::Whole, {}}
                       : Checked{StoredState::Damaged, {QStringLiteral("Hier gehört ein Objekt hin.")}};
}

/// The last good version, where it is one.
std::optional<QByteArray> lastGood(const UserDefaults &defaults, const StoredKind &kind)
{
    const std::optional<QByteArray> text = defaults.readLastGood(kind.key).value_or(std::nullopt);
    return text && kind.check(*text).first == StoredState::Whole ? text : std::nullopt;
}

} // namespace

StoredKind storedObjectKind(const QString &key)
{
    return {key, [](const QByteArray &text) {
                return checkedJson(text, [](const QJsonValue &json) { return json.isObject(); });
            }};
}

StoredKind storedJsonKind(const QString &key)
{
    return {key, [](const QByteArray &text) { return checkedJson(text, [](const QJsonValue &) { return true; }); }};
}

bool hasLastGood(const UserDefaults &defaults, const StoredKind &kind)
{
    return lastGood(defaults, kind).has_value();
}

StoredCondition conditionOf(const UserDefaults &defaults, const StoredKind &kind)
{
    StoredCondition condition{kind.key, defaults.fileOf(kind.key), StoredState::Absent, {}, false};
    const Result<std::optional<QByteArray>> text = defaults.read(kind.key);
    if (!text) {
        condition.state = StoredState::Unreadable;
        condition.lost << text.error().message;
    } else if (*text) {
        std::tie(condition.state, condition.lost) = kind.check(**text);
    }
    if (!condition.isWhole())
        condition.hasLastGood = hasLastGood(defaults, kind);
    return condition;
}

void keepLastGood(UserDefaults &defaults, const StoredKind &kind)
{
    const Result<std::optional<QByteArray>> good = defaults.readLastGood(kind.key);
    if (!good || *good || !defaults.json(kind.key))
        return;
    // Where it cannot be stored now, the next change stores it.
    (void)defaults.update(kind.key, [&](const std::optional<QByteArray> &text) {
        const bool whole = text && kind.check(*text).first == StoredState::Whole;
        return whole ? std::optional(UserDefaults::Change{*text}) : std::nullopt;
    });
}

Result<void> restoreLastGood(UserDefaults &defaults, const StoredKind &kind)
{
    const std::optional<QByteArray> good = lastGood(defaults, kind);
    if (!good)
        return failure(QStringLiteral("Von „%1“ gibt es keine letzte gute Fassung.").arg(kind.key));
    return defaults.replace(kind.key, good);
}

Result<void> beginAnew(UserDefaults &defaults, const StoredKind &kind)
{
    return defaults.replace(kind.key, kind.fresh);
}

} // namespace brellin

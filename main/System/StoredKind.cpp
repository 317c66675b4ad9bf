#include "System/StoredKind.h"

namespace brellin {

namespace {

using Checked = std::pair<StoredState, QStringList>;

Checked damaged(const JsonError &why)
{
    return {StoredState::Damaged, {why.sentence()}};
}

/// If no record can be read, the list is damaged and not merely empty.
Checked partly(const QStringList &lost, qsizetype all)
{
    if (lost.isEmpty())
        return {StoredState::Whole, {}};
    return {lost.size() < all ? StoredState::Partly : StoredState::Damaged, lost};
}

Checked checkedObject(const QByteArray &text, const std::function<QString(const QJsonValue &)> &fault)
{
    const JsonResult<QJsonValue> json = parseJson(text);
    if (!json || !json->isObject())
        return damaged(json ? JsonError{{}, QStringLiteral("hier gehört ein Objekt hin")} : json.error());
    const QJsonObject object = json->toObject();
    QStringList lost;
    for (auto member = object.begin(); fault && member != object.end(); ++member) {
        if (const QString why = fault(member.value()); !why.isEmpty())
            lost << JsonError{member.key(), why}.sentence();
    }
    return partly(lost, object.size());
}

/// The last good version, if it can be decoded completely.
std::optional<QByteArray> lastGood(const UserDefaults &defaults, const StoredKind &kind)
{
    const std::optional<QByteArray> text = defaults.readLastGood(kind.key).value_or(std::nullopt);
    return text && kind.check(*text).first == StoredState::Whole ? text : std::nullopt;
}

} // namespace

StoredKind storedObjectKind(const QString &key, const std::function<QString(const QJsonValue &)> &fault)
{
    return {key, [fault](const QByteArray &text) { return checkedObject(text, fault); }};
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
    // If this fails, the next change stores it.
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

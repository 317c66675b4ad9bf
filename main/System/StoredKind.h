#pragma once

#include "System/StoredList.h"

#include <functional>

namespace brellin {

/// One of the lists that a room stores, for whoever looks after them all without knowing their records.
struct StoredKind {
    QString key;
    /// What a text comes to, and what of it is lost.
    std::function<std::pair<StoredState, QStringList>(const QByteArray &text)> check;
    /// What a new beginning stores; nothing: the key is absent then.
    std::optional<QByteArray> fresh = {};
};

/// A list of records.
template <class Record>
StoredKind storedKind(const QString &key)
{
    return {key, [](const QByteArray &text) {
                const StoredList<Record> list = decodedList<Record>(text);
                return std::pair(list.state, list.lost);
            }};
}
/// An object with keys that are the user's own (paths). `fault` says what is wrong with the value of one, without a full
/// stop; empty: nothing.
StoredKind storedObjectKind(const QString &key, const std::function<QString(const QJsonValue &)> &fault = {});
/// A list of a room that is not at hand: all that is known is that its records are objects.
StoredKind storedRecordsKind(const QString &key);

/// Whether there is a last good version that decodes whole.
bool hasLastGood(const UserDefaults &defaults, const StoredKind &kind);
StoredCondition conditionOf(const UserDefaults &defaults, const StoredKind &kind);
/// The same for a list that has just been read.
template <class Record>
StoredCondition conditionOf(const UserDefaults &defaults, const StoredKind &kind, const StoredList<Record> &list)
{
    return {kind.key, defaults.fileOf(kind.key), list.state, list.lost, !list.isWhole() && hasLastGood(defaults, kind)};
}
/// Makes what is stored the last good version, where it is whole and there is none yet: an earlier version has stored it.
void keepLastGood(UserDefaults &defaults, const StoredKind &kind);
/// Puts the last good version in the place of what is stored, which is kept aside. Fails where there is none that decodes.
Result<void> restoreLastGood(UserDefaults &defaults, const StoredKind &kind);
/// Keeps what is stored aside; from now on the key is absent, or holds what its kind begins with.
Result<void> beginAnew(UserDefaults &defaults, const StoredKind &kind);

} // namespace brellin

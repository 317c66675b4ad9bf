#pragma once

#include "System/StoredList.h"

#include <functional>

namespace brellin {

/// Describes a stored list, for code that maintains all lists without knowing their records.
struct StoredKind {
    QString key;
    /// Checks a text: its state, and what could not be read.
    std::function<std::pair<StoredState, QStringList>(const QByteArray &text)> check;
    /// What a reset stores; nullopt: the key is then absent.
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
/// An object whose keys are user data (paths). `fault` returns what is wrong with a value, without a full stop; empty
/// if nothing.
StoredKind storedObjectKind(const QString &key, const std::function<QString(const QJsonValue &)> &fault = {});

/// Whether there is a last good version that can be decoded completely.
bool hasLastGood(const UserDefaults &defaults, const StoredKind &kind);
StoredCondition conditionOf(const UserDefaults &defaults, const StoredKind &kind);
/// The same for a list that has just been read.
template <class Record>
StoredCondition conditionOf(const UserDefaults &defaults, const StoredKind &kind, const StoredList<Record> &list)
{
    return {kind.key, defaults.fileOf(kind.key), list.state, list.lost, !list.isWhole() && hasLastGood(defaults, kind)};
}
/// Creates the last good version from an intact list that has none, because an earlier version stored it.
void keepLastGood(UserDefaults &defaults, const StoredKind &kind);
/// Replaces the stored list with the last good version and keeps the old one aside. Fails if there is no good version.
Result<void> restoreLastGood(UserDefaults &defaults, const StoredKind &kind);
/// Resets a list to absent, or to its fresh value. Keeps the old one aside.
Result<void> beginAnew(UserDefaults &defaults, const StoredKind &kind);

} // namespace brellin

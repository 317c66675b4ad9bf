#pragma once

#include "System/StoredKind.h"

#include <QJsonObject>

#include <vector>

namespace brellin {

/// Every list that the agent stores, and the plain settings, which hold its schedule.
const std::vector<StoredKind> &agentKinds();
/// What reset settings start from. They are not those of an earlier version: the rules got their examples long ago, and
/// the user may have deleted some since.
QJsonObject freshSettings();
/// The keys of the lists that grow with the number of files handled.
const QStringList &longAgentLists();
/// The list with this key; null if the agent has none.
const StoredKind *agentKind(const QString &key);

} // namespace brellin

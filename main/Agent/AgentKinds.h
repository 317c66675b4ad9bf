#pragma once

#include "System/StoredKind.h"

#include <vector>

namespace brellin {

/// Every list that the agent stores, and the plain settings, which tell when it begins.
const std::vector<StoredKind> &agentKinds();
/// The keys of those that grow with the number of files handled.
const QStringList &longAgentLists();
/// The one of a key; none of the agent's: nothing.
const StoredKind *agentKind(const QString &key);

} // namespace brellin

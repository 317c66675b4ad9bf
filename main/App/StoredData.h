#pragma once

#include "App/Command.h"
#include "System/StoredKind.h"

namespace brellin {

/// All stored data of the program, in the order of the listing.
const std::vector<StoredKind> &storedKinds();

/// The message about damaged data and what to do.
QString damageNotice(const StoredCondition &condition);

/// Reports damage to the list that a command works on, and what to do. Returns an exit code if the list cannot be
/// decoded at all.
std::optional<ExitCode> refuseIfDamaged(const CommandContext &context, const QString &list);

} // namespace brellin

#pragma once

#include "App/Command.h"
#include "System/StoredKind.h"

namespace brellin {

/// Everything that the program stores for the user, in the order in which it is listed.
const std::vector<StoredKind> &storedKinds();

/// Names what is damaged of a list that a command is about, and how the user goes on. Ends the command where the list does
/// not decode at all.
std::optional<ExitCode> refuseIfDamaged(const CommandContext &context, const QString &list);

} // namespace brellin

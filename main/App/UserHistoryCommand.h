#pragma once

#include "App/Command.h"

namespace brellin {

/// "verlauf --alle": the user's steps and the agent's runs, newest first.
ExitCode showWholeHistory(CommandContext &context);
/// "verlauf suchen NAME": the steps of entries that ever had a name with this in it, and where they are now.
ExitCode searchHistory(CommandContext &context, const QString &name);

} // namespace brellin

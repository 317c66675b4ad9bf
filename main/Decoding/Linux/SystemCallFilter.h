#pragma once

#include "Base/Result.h"
#include "Decoding/Confinement.h"

namespace brellin {

/// Irrevocably forbids this process to connect, to start processes (unless that is its work) and to change the file
/// system: such calls fail with EPERM. Requires PR_SET_NO_NEW_PRIVS; `errc::invalid_argument` if the kernel or
/// processor has no filters.
Result<void> filterSystemCalls(ConfinedWork work);

} // namespace brellin

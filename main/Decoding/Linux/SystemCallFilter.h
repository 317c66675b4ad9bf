#pragma once

#include "Base/Result.h"
#include "Decoding/Confinement.h"

namespace brellin {

/// Forbids this process for good to connect, to start processes (unless that is its work) and to change anything in the file system: such calls fail
/// with EPERM from now on. Wants PR_SET_NO_NEW_PRIVS; `errc::invalid_argument` on a kernel or processor without filters.
Result<void> filterSystemCalls(ConfinedWork work);

} // namespace brellin

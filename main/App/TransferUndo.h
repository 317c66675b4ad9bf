#pragma once

#include "FileOperations/UserAction.h"
#include "Transfers/TransferRecord.h"

namespace brellin {

/// A finished transfer as an action that can be taken back.
UserAction actionOf(const TransferRecord &record);

} // namespace brellin

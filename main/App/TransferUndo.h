#pragma once

#include "FileOperations/UserAction.h"
#include "Transfers/TransferRecord.h"

namespace brellin {

/// A finished transfer as an undoable action.
UserAction actionOf(const TransferRecord &record);

} // namespace brellin

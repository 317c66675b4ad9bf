#pragma once

#include "Disk/FileActions.h"
#include "Transfers/TransferState.h"

#include <memory>

namespace brellin {

/// Flushes a volume and waits for it. Cancelled, it waits for a moment more and then fails (`errc::operation_canceled`): what
/// was written may or may not be on the disk then, and the flush goes on by itself, as open work. `files` outlives that.
Result<void> awaitFlush(FileActions &files, const std::shared_ptr<const WrittenVolume> &volume,
                        const TransferState &state);

} // namespace brellin

#pragma once

#include "Disk/FileActions.h"
#include "Transfers/TransferState.h"

#include <memory>

namespace brellin {

/// Flushes a volume and waits for it. After a cancel waits 1 s more, then fails with `errc::operation_canceled`; the
/// flush goes on in the background as open work, and its result is unknown. `files` must outlive that.
Result<void> awaitFlush(FileActions &files, const std::shared_ptr<const WrittenVolume> &volume,
                        const TransferState &state);

} // namespace brellin

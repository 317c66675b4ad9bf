#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// Replaces a file atomically, even across a crash: writes a temporary file beside it (mode 0600), flushes it, renames
/// it over the old one and flushes the folder. A symlink is replaced at its target.
Result<void> writeAtomically(const Location &file, const QByteArray &content);
/// The same without flushing, for files that can be restored from a flushed one beside them.
Result<void> writeUnflushed(const Location &file, const QByteArray &content);

} // namespace brellin

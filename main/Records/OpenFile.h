#pragma once

#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// Appends all bytes to an open file; removes a partial write.
Result<void> appendAll(int descriptor, const QByteArray &bytes);

} // namespace brellin

#pragma once

#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// Writes all of it at the end of an open file.
Result<void> appendAll(int descriptor, const QByteArray &bytes);

} // namespace brellin

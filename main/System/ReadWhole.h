#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <limits>

namespace brellin {

/// The whole content of a file; `errc::file_too_large` above `most` bytes.
Result<QByteArray> readWhole(const Location &file, qint64 most = std::numeric_limits<qint64>::max());

} // namespace brellin

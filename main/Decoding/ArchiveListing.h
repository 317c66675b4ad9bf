#pragma once

#include "Base/Result.h"

#include <QJsonObject>

namespace brellin {

/// What an archive holds, without unpacking it: "entries" (each with "name", "size" where the archive says it, and "folder"),
/// at most 5,000 of them, and "more" where there are more. Read from an open file.
Result<QJsonObject> archiveListing(int file);

} // namespace brellin

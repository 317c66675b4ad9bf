#pragma once

#include "Base/Result.h"

#include <QJsonObject>

namespace brellin {

/// Lists an open archive without unpacking it: "entries" (at most 5,000, each with "name", "folder" and, if known,
/// "size"), and "more" if there are more.
Result<QJsonObject> archiveListing(int file);

} // namespace brellin

#pragma once

#include "Base/Json.h"

#include <initializer_list>

namespace brellin {

/// Fails with the first key that an object lacks. Accepts anything but objects; the reader rejects those.
JsonResult<void> requireKeys(const QJsonValue &record, std::initializer_list<const char *> keys);
/// The same for each record of the list under a key.
JsonResult<void> requireKeysOfEach(const QJsonValue &record, const char *list,
                                   std::initializer_list<const char *> keys);

} // namespace brellin

#pragma once

#include <QUuid>

namespace brellin {

/// A random id, for records made by the thousands: from a generator that is seeded once per thread, while
/// QUuid::createUuid asks the processor for each.
QUuid freshId();

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/Decoders.h"

#include <QDate>

namespace brellin {

/// The day a photo was taken; otherwise the day the entry was created, or modified if the volume stores no birth time.
/// Invalid if the entry cannot be read. Blocking.
QDate dayOf(const Location &entry, Decoder &decoder, const JobControl &control);

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/Decoders.h"

#include <QDate>

namespace brellin {

/// The day on which a photo was taken; of anything else, and of a photo that does not tell, the day the file was created
/// (where the volume does not know that: last changed). Blocking.
QDate dayOf(const Location &entry, Decoder &decoder, const JobControl &control);

} // namespace brellin

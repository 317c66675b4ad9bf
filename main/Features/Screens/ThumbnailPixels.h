#pragma once

#include "System/DecoderProtocol.h"

#include <QImage>

namespace brellin {

/// Converts a decoded picture to the format that paints fastest. The image owns its pixels.
QImage imageOf(const DecodedPicture &picture);

} // namespace brellin

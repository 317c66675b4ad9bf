#pragma once

#include "System/DecoderProtocol.h"

#include <QImage>

namespace brellin {

/// A decoded picture in the form in which pictures are drawn quickest. It holds its own pixels.
QImage imageOf(const DecodedPicture &picture);

} // namespace brellin

#pragma once

#include "System/DecoderProtocol.h"

#include <QIODevice>
#include <QImage>

namespace brellin {

/// A picture no larger than `side` × `side`, upright as its camera was held, in the colours of a screen (sRGB), scaled while
/// it is decoded where its format can. A small one keeps its size. The device is open for reading and is not sequential.
Result<DecodedPicture> decodePicture(QIODevice &file, int side);

/// A page of a PDF file on white, as large as `side` × `side` allows; pages count from 0.
Result<DecodedPicture> drawPdfPage(QIODevice &pdf, int page, int side);

/// The bare pixels of an image.
DecodedPicture pixelsOf(const QImage &image);

} // namespace brellin

#pragma once

#include "System/DecoderProtocol.h"

#include <QIODevice>
#include <QImage>

namespace brellin {

/// Decodes a picture to at most `side` × `side`: upright by its EXIF orientation, in sRGB, scaled while decoding if the
/// format supports that. Never enlarges. The device must be open for reading and random-access.
Result<DecodedPicture> decodePicture(QIODevice &file, int side);

/// Renders a PDF page on white to fit `side` × `side`. Pages count from 0.
Result<DecodedPicture> drawPdfPage(QIODevice &pdf, int page, int side);

/// Extracts the pixels of an image.
DecodedPicture pixelsOf(const QImage &image);

} // namespace brellin

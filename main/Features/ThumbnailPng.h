#pragma once

#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <QByteArray>
#include <QMap>

namespace brellin {

/// Text chunks of a PNG file, by keyword.
using PngTexts = QMap<QByteArray, QByteArray>;

/// Encodes a picture as PNG. Done here and not in the decoder process, so that the file can be trusted.
QByteArray pngOf(const DecodedPicture &picture, const PngTexts &texts);

/// The text chunks before the pixels of a PNG file, read without decoding; empty for other files.
PngTexts pngTexts(const Location &file);

} // namespace brellin

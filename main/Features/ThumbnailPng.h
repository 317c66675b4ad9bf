#pragma once

#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <QByteArray>
#include <QMap>

namespace brellin {

/// The texts in a PNG file, by their keyword.
using PngTexts = QMap<QByteArray, QByteArray>;

/// A picture as a PNG file. It is written here and not where the picture was decoded, so that what the file holds can be
/// trusted.
QByteArray pngOf(const DecodedPicture &picture, const PngTexts &texts);

/// The texts that stand before a PNG file's pixels, read without decoding any; empty for what is no PNG file.
PngTexts pngTexts(const Location &file);

} // namespace brellin

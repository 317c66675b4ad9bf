#pragma once

#include "Base/Result.h"

#include <QIODevice>
#include <QJsonObject>

namespace brellin {

/// What a picture, a PDF file, a film or a piece of music says about itself, as far as it does: "width" and "height" (in
/// pixels, upright), "taken" (local time without a zone, ISO 8601), "camera", "pages", "seconds". The device is open for
/// reading and is not sequential.
Result<QJsonObject> mediaFacts(QIODevice &file);

/// The same for the picture data that a camera embeds (EXIF): `bytes` begin with "II" or "MM".
QJsonObject exifFacts(QByteArrayView bytes);

/// The same for films and sound: MP4 and QuickTime, Matroska and WebM, AVI, WAV, FLAC, Ogg, MP3. Empty for all else.
QJsonObject recordingFacts(QIODevice &file);

} // namespace brellin

#pragma once

#include "Base/Result.h"

#include <QIODevice>
#include <QJsonObject>

namespace brellin {

/// Metadata of a picture, PDF, video or audio file, as far as present: "width" and "height" (pixels, upright), "taken"
/// (ISO 8601 local time without zone), "camera", "pages", "pageWidth" and "pageHeight" (of this page, in points),
/// "seconds". The device must be open for reading and random-access.
Result<QJsonObject> mediaFacts(QIODevice &file, int page = 0);

/// The same from a camera's EXIF data; `bytes` start with "II" or "MM".
QJsonObject exifFacts(QByteArrayView bytes);

/// The same for video and audio: MP4 and QuickTime, Matroska and WebM, AVI, WAV, FLAC, Ogg, MP3. Empty for other
/// formats.
QJsonObject recordingFacts(QIODevice &file);

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// The path of the external program that extracts video frames; empty if not installed. It is run as a process, never
/// linked.
Location videoProgram();

/// Runs `program` on a video, confined like our own decoders. Returns a PNG file, which is as untrusted as the video.
Result<QByteArray> drawVideo(const Location &program, const Location &video, int side);

} // namespace brellin

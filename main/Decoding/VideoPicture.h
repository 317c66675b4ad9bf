#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

namespace brellin {

/// The path of the program that can draw a video's picture, empty where it is not installed. It is called, never linked.
Location videoProgram();

/// What `program` draws of a video: the bytes of a PNG file, which are no more to be trusted than the video. The program is
/// confined like our own decoding.
Result<QByteArray> drawVideo(const Location &program, const Location &video, int side);

} // namespace brellin

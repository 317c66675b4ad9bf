#pragma once

#include <QIODevice>
#include <QJsonObject>

namespace brellin {

/// Length, size and time of recording of an MP4 or QuickTime film; empty for a picture in the same container.
QJsonObject mp4Facts(QIODevice &file);

} // namespace brellin

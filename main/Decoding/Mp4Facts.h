#pragma once

#include <QIODevice>
#include <QJsonObject>

namespace brellin {

/// Duration, dimensions and recording time of an MP4 or QuickTime video; empty for a picture in the same container.
QJsonObject mp4Facts(QIODevice &file);

} // namespace brellin

#include "Features/Screens/ThumbnailPixels.h"

namespace brellin {

QImage imageOf(const DecodedPicture &picture)
{
    const auto *bytes = reinterpret_cast<const uchar *>(picture.pixels.constData());
    const qsizetype row = qsizetype(picture.width) * 4;
    if (picture.pixels.size() < row * picture.height)
        return {};
    const QImage::Format format = picture.opaque ? QImage::Format_RGBX8888 : QImage::Format_RGBA8888;
    const QImage seen(bytes, picture.width, picture.height, row, format);
    return seen.convertToFormat(picture.opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
}

} // namespace brellin

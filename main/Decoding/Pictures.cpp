#include "Decoding/Pictures.h"

#include <QColorSpace>
#include <QImageReader>
#include <QPainter>
#include <QPdfDocument>

#include <algorithm>

namespace brellin {

namespace {

/// Beyond any camera: a file that claims more is a decompression bomb.
constexpr qint64 mostPixels = 300'000'000;
/// Memory limit for one decoded picture; leaves room for a second during conversion.
constexpr int mostMegabytes = 400;

bool isTooLarge(QSize size)
{
    return qint64(size.width()) * size.height() > mostPixels;
}

/// `size` scaled to fit a square of `side`; each side at least 1.
QSize within(QSizeF size, int side)
{
    const QSizeF scaled = size.scaled(side, side, Qt::KeepAspectRatio);
    return {std::clamp(qRound(scaled.width()), 1, side), std::clamp(qRound(scaled.height()), 1, side)};
}

bool exceeds(QSize size, int side)
{
    return size.width() > side || size.height() > side;
}

QImage inScreenColours(QImage image)
{
    const QColorSpace screen(QColorSpace::SRgb);
    if (image.colorSpace().isValid() && image.colorSpace() != screen)
        image.convertToColorSpace(screen);
    return image;
}

} // namespace

DecodedPicture pixelsOf(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGBA8888);
    DecodedPicture picture{plain.width(), plain.height(), !image.hasAlphaChannel(), {}};
    picture.pixels.reserve(qsizetype(plain.width()) * plain.height() * 4);
    for (int row = 0; row < plain.height(); ++row)
        picture.pixels.append(reinterpret_cast<const char *>(plain.constScanLine(row)), qsizetype(plain.width()) * 4);
    return picture;
}

Result<DecodedPicture> decodePicture(QIODevice &file, int side)
{
    QImageReader reader(&file);
    QImageReader::setAllocationLimit(mostMegabytes);
    // The name may be wrong: let the content decide.
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && isTooLarge(size))
        return failure(undecodable());
    if (size.isValid() && exceeds(size, side))
        reader.setScaledSize(within(size, side));
    QImage image = reader.read();
    if (image.isNull())
        return failure(undecodable());
    if (exceeds(image.size(), side))
        image = image.scaled(within(image.size(), side), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return pixelsOf(inScreenColours(std::move(image)));
}

Result<DecodedPicture> drawPdfPage(QIODevice &pdf, int page, int side)
{
    QPdfDocument document;
    document.load(&pdf);
    if (document.status() != QPdfDocument::Status::Ready || page < 0 || page >= document.pageCount())
        return failure(undecodable());
    const QSizeF points = document.pagePointSize(page);
    if (points.isEmpty())
        return failure(undecodable());
    const QImage drawn = document.render(page, within(points, side));
    if (drawn.isNull())
        return failure(undecodable());
    QImage paper(drawn.size(), QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter(&paper).drawImage(0, 0, drawn);
    return pixelsOf(paper);
}

} // namespace brellin

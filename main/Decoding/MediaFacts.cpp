#include "Decoding/MediaFacts.h"

#include "System/DecoderProtocol.h"

#include <QImageReader>
#include <QPdfDocument>

namespace brellin {

namespace {

/// Cameras put EXIF data near the beginning.
constexpr qint64 exifWithin = 512 * 1024;

/// The EXIF block in the first bytes of a picture: a whole TIFF file; after "Exif" in JPEG and HEIC; after the chunk
/// name in PNG and WebP. Empty if there is none.
QByteArrayView exifBlock(QByteArrayView beginning)
{
    const auto isBlock = [&](qsizetype at) {
        const QByteArrayView start = beginning.sliced(at).first(std::min<qsizetype>(4, beginning.size() - at));
        return start == QByteArrayView("II*\0", 4) || start == QByteArrayView("MM\0*", 4);
    };
    if (isBlock(0))
        return beginning;
    for (const QByteArrayView name :
         {QByteArrayView("Exif\0\0", 6), QByteArrayView("eXIf", 4), QByteArrayView("EXIF", 4)}) {
        for (qsizetype at = beginning.indexOf(name); at >= 0; at = beginning.indexOf(name, at + 1)) {
            // WebP stores the length of the block in between.
            for (const qsizetype behind : {at + name.size(), at + name.size() + 4}) {
                if (behind < beginning.size() && isBlock(behind))
                    return beginning.sliced(behind);
            }
        }
    }
    return {};
}

QJsonObject pictureFacts(QIODevice &file)
{
    file.seek(0);
    const QByteArray beginning = file.read(exifWithin);
    QJsonObject facts = exifFacts(exifBlock(beginning));
    file.seek(0);
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    QSize size = reader.size();
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    if (size.isValid()) {
        facts.insert(QStringLiteral("width"), size.width());
        facts.insert(QStringLiteral("height"), size.height());
    }
    return facts;
}

Result<QJsonObject> pdfFacts(QIODevice &file, int page)
{
    QPdfDocument document;
    document.load(&file);
    if (document.status() != QPdfDocument::Status::Ready)
        return failure(undecodable());
    QJsonObject facts{{QStringLiteral("pages"), document.pageCount()}};
    const QSizeF points = page < document.pageCount() ? document.pagePointSize(page) : QSizeF();
    if (!points.isEmpty()) {
        facts.insert(QStringLiteral("pageWidth"), points.width());
        facts.insert(QStringLiteral("pageHeight"), points.height());
    }
    return facts;
}

} // namespace

Result<QJsonObject> mediaFacts(QIODevice &file, int page)
{
    if (file.peek(1024).contains("%PDF-"))
        return pdfFacts(file, page);
    QJsonObject facts = recordingFacts(file);
    if (facts.isEmpty())
        facts = pictureFacts(file);
    if (facts.isEmpty())
        return failure(undecodable());
    return facts;
}

} // namespace brellin

#include "ContentView/Screens/EntryPictures.h"

#include "Disk/FileTypes.h"
#include "Features/FileTags.h"
#include "Features/Screens/DocumentPicture.h"

#include <QPainter>
#include <QPainterPath>

namespace brellin {

namespace {

EntryIcons::Mark markOf(const FileItem &item)
{
    switch (item.link) {
    case LinkState::None:
        return EntryIcons::Mark::None;
    case LinkState::Leads:
        return EntryIcons::Mark::Link;
    case LinkState::Broken:
        return EntryIcons::Mark::BrokenLink;
    }
    return EntryIcons::Mark::None;
}

void paintCentred(QPainter &painter, const QRectF &place, const QPixmap &picture)
{
    const QSizeF size = picture.deviceIndependentSize();
    const QPointF corner = place.center() - QPointF(size.width() / 2, size.height() / 2);
    painter.drawPixmap(QPointF(std::round(corner.x()), std::round(corner.y())), picture);
}

/// With round corners and a thin border, so that white pictures stand out from the background.
void paintFramed(QPainter &painter, const QRectF &place, QPixmap picture)
{
    const double pixels = painter.device()->devicePixelRatioF();
    picture.setDevicePixelRatio(pixels);
    QSizeF size = picture.deviceIndependentSize();
    size.scale(place.size(), Qt::KeepAspectRatio);
    const QRectF frame(place.center() - QPointF(size.width() / 2, size.height() / 2), size);
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath round;
    round.addRoundedRect(frame, 5, 5);
    painter.setClipPath(round);
    painter.drawPixmap(frame, picture, QRectF(picture.rect()));
    painter.setClipping(false);
    painter.setPen(QPen(QColor(0, 0, 0, 38), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.restore();
}

} // namespace

bool mayHaveThumbnail(const FileItem &item)
{
    if (item.isFolder || item.size == 0 || item.link == LinkState::Broken)
        return false;
    const FileType &type = fileTypeOf(extensionOf(item.nameBytes));
    return type.conformsTo(TypeTrait::Image) || type.conformsTo(TypeTrait::Movie) || type.conformsTo(TypeTrait::Pdf);
}

QPixmap EntryPictures::symbol(const FileItem &item, double side, double pixelsPerPoint) const
{
    if (!item.isFolder)
        return documentPicture(item.nameBytes, side, pixelsPerPoint, markOf(item));
    std::optional<QColor> tint;
    if (const std::optional<QString> name = m_colors.color(item.location()))
        if (const std::optional<std::uint32_t> rgb = FileTags::color(*name))
            tint = QColor::fromRgb(*rgb);
    return EntryIcons::folder(side, pixelsPerPoint, tint, markOf(item));
}

void EntryPictures::paintSymbol(QPainter &painter, const QRectF &place, const FileItem &item) const
{
    const double side = std::min(place.width(), place.height());
    paintCentred(painter, place, symbol(item, side, painter.device()->devicePixelRatioF()));
}

void EntryPictures::paintLarge(QPainter &painter, const QRectF &place, const FileItem &item) const
{
    if (m_thumbnails && mayHaveThumbnail(item)) {
        const double pixels = painter.device()->devicePixelRatioF();
        const int side = qRound(std::max(place.width(), place.height()) * pixels);
        if (const QPixmap picture = m_thumbnails->pixmap(item.location(), item.modified, side); !picture.isNull()) {
            paintFramed(painter, place, picture);
            return;
        }
    }
    paintSymbol(painter, place, item);
}

} // namespace brellin

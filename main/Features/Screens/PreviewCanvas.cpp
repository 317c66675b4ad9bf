#include "Features/Screens/PreviewCanvas.h"

#include "Features/Screens/DocumentPicture.h"
#include "Features/Screens/ThumbnailPixels.h"
#include "Look/Cards.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace brellin {

namespace {

constexpr double paperRadius = 3;
constexpr double largestDrawing = 112;
constexpr double aroundPicture = 9;

const DecodedPicture *pictureIn(const PreviewBody &body)
{
    if (const auto *picture = std::get_if<PreviewPicture>(&body))
        return &picture->picture;
    if (const auto *page = std::get_if<PreviewPage>(&body))
        return &page->picture;
    return nullptr;
}

} // namespace

PreviewCanvas::PreviewCanvas(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("vorschau.bild"));
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void PreviewCanvas::setContent(const PreviewContent &content)
{
    const DecodedPicture *picture = pictureIn(content.body);
    m_picture = picture ? QPixmap::fromImage(imageOf(*picture)) : QPixmap();
    m_isPaper = picture && picture->opaque;
    m_isFolder = content.isFolder;
    m_isLink = content.isLink;
    m_fileName = content.entry.filename().native();
    setAccessibleName(QStringLiteral("Vorschau von „%1“").arg(content.name));
    update();
}

void PreviewCanvas::setRemark(const QString &remark)
{
    m_remark = remark;
    setAccessibleDescription(remark);
    update();
}

void PreviewCanvas::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (m_picture.isNull())
        paintDrawing(painter);
    else
        paintPicture(painter);
}

/// Scales down to fit, but never enlarges.
void PreviewCanvas::paintPicture(QPainter &painter) const
{
    QSizeF size = QSizeF(m_picture.size()) / devicePixelRatioF();
    const double around = 2.0 * scaled(aroundPicture);
    const QSizeF room(width() - around, height() - around);
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room, Qt::KeepAspectRatio);
    const QRectF place(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    if (m_isPaper) {
        painter.setOpacity(0.6);
        paintShadow(painter, place, paperRadius);
        painter.setOpacity(1);
        QPainterPath shape;
        shape.addRoundedRect(place, paperRadius, paperRadius);
        painter.setClipPath(shape);
    }
    painter.drawPixmap(place, m_picture, QRectF(m_picture.rect()));
}

void PreviewCanvas::paintDrawing(QPainter &painter) const
{
    const double side = std::min({scaled(largestDrawing) * 1.0, width() * 0.7, height() * 0.6});
    if (side < 8)
        return;
    const double textSpace = m_remark.isEmpty() ? 0 : scaled(44);
    const QRectF place((width() - side) / 2, (height() - side - textSpace) / 2, side, side);
    painter.drawPixmap(place.topLeft(), drawing(side));
    if (m_remark.isEmpty())
        return;
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Secondary));
    const QRectF below(0, place.bottom() + scaled(8), width(), height() - place.bottom() - scaled(8));
    painter.drawText(below, static_cast<int>(Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap), m_remark);
}

QPixmap PreviewCanvas::drawing(double side) const
{
    const EntryIcons::Mark mark = m_isLink ? EntryIcons::Mark::Link : EntryIcons::Mark::None;
    if (m_isFolder)
        return EntryIcons::folder(side, devicePixelRatioF(), std::nullopt, mark);
    return documentPicture(m_fileName, side, devicePixelRatioF(), mark);
}

} // namespace brellin

#include "Features/Screens/PreviewStack.h"

#include "Disk/FileTypes.h"
#include "Features/Screens/DocumentPicture.h"
#include "Features/Screens/ThumbnailImages.h"
#include "Look/Cards.h"
#include "Look/Theme.h"

#include <QPainter>

#include <array>

namespace brellin {

namespace {

constexpr double usualSide = 200;
constexpr double pictureShare = 0.62;
/// How an entry lies in the stack, the first on top.
struct Lie {
    double degrees;
    double right; ///< share of the side
    double down;
};
constexpr std::array<Lie, PreviewSummary::mostOnTop> lies{{{0, -0.03, 0.05}, {7, 0.09, 0}, {-8, -0.12, -0.04}}};

bool mayHavePicture(const PreviewSummary::Top &entry)
{
    const FileType &type = fileTypeOf(lowerExtensionOf(entry.entry.filename().native()));
    return !entry.isFolder &&
           (type.conformsTo(TypeTrait::Image) || type.conformsTo(TypeTrait::Pdf) || type.conformsTo(TypeTrait::Movie));
}

} // namespace

PreviewStack::PreviewStack(ThumbnailImages *thumbnails, QWidget *parent) : QWidget(parent), m_thumbnails(thumbnails)
{
    setObjectName(QStringLiteral("previewStack"));
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
    if (thumbnails)
        connect(thumbnails, &ThumbnailImages::ready, this, qOverload<>(&QWidget::update));
}

void PreviewStack::setEntries(const std::vector<PreviewSummary::Top> &entries)
{
    m_entries = entries;
    update();
}

QSize PreviewStack::sizeHint() const
{
    return {scaled(usualSide), scaled(usualSide)};
}

QPixmap PreviewStack::thumbnailOf(const PreviewSummary::Top &entry, int side) const
{
    return m_thumbnails && mayHavePicture(entry) ? m_thumbnails->pixmap(entry.entry, entry.modified, side) : QPixmap();
}

void PreviewStack::paintOne(QPainter &painter, const PreviewSummary::Top &entry, double side) const
{
    const QPixmap picture = thumbnailOf(entry, static_cast<int>(side * devicePixelRatioF()));
    if (picture.isNull()) {
        const QPointF corner(-side / 2, -side / 2);
        painter.drawPixmap(corner, entry.isFolder
                                       ? EntryIcons::folder(side, devicePixelRatioF())
                                       : documentPicture(entry.entry.filename().native(), side, devicePixelRatioF()));
        return;
    }
    const QSizeF size = QSizeF(picture.size()).scaled(side, side, Qt::KeepAspectRatio);
    const QRectF place(-size.width() / 2, -size.height() / 2, size.width(), size.height());
    const double frame = scaled(3);
    const QRectF paper = place.adjusted(-frame, -frame, frame, frame);
    paintShadow(painter, paper, 2);
    painter.fillRect(paper, Qt::white);
    painter.drawPixmap(place, picture, QRectF(picture.rect()));
    painter.setPen(QPen(color(Token::Line), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(paper);
}

void PreviewStack::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const double side = std::min(width(), height()) * pictureShare;
    for (std::size_t below = m_entries.size(); below > 0; --below) {
        const Lie &lie = lies.at(below - 1);
        painter.save();
        painter.translate(width() / 2.0 + lie.right * side, height() / 2.0 + lie.down * side);
        painter.rotate(lie.degrees);
        paintOne(painter, m_entries[below - 1], side);
        painter.restore();
    }
}

} // namespace brellin

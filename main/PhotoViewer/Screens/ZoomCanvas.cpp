#include "PhotoViewer/Screens/ZoomCanvas.h"

#include "Look/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace brellin {

namespace {

/// The scale grows by a fifth per step of a usual wheel.
constexpr double growthPerDegree = 1.0122;
constexpr double unitsPerDegree = 8;

} // namespace

ZoomCanvas::ZoomCanvas(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("zoomCanvas"));
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ZoomCanvas::setPicture(const QPixmap &picture, const QSizeF &whole, Sharpness sharpness)
{
    m_picture = picture;
    m_whole = whole;
    if (sharpness == Sharpness::Other)
        m_zoom = {};
    update();
    showCursor();
    Q_EMIT scaled();
}

void ZoomCanvas::fit()
{
    setZoom({});
}

void ZoomCanvas::showWhole()
{
    setZoom(zoomedTo(m_zoom, 1, QRectF(rect()).center(), ground()));
}

void ZoomCanvas::zoomBy(double factor)
{
    setZoom(zoomedTo(m_zoom, scale() * factor, QRectF(rect()).center(), ground()));
}

void ZoomCanvas::moveBy(QPointF way)
{
    setZoom(movedBy(m_zoom, way, ground()));
}

int ZoomCanvas::shownSide() const
{
    const QSizeF shown = place().size() * devicePixelRatioF();
    return static_cast<int>(std::ceil(std::max(shown.width(), shown.height())));
}

void ZoomCanvas::setZoom(const Zoom &zoom)
{
    if (zoom == m_zoom)
        return;
    const double before = scale();
    m_zoom = zoom;
    update();
    showCursor();
    if (scale() != before)
        Q_EMIT scaled();
}

void ZoomCanvas::showCursor()
{
    const QRectF shown = place();
    const bool movable = !m_picture.isNull() && (shown.width() > width() || shown.height() > height());
    setCursor(!movable ? Qt::ArrowCursor : m_draggedFrom ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
}

void ZoomCanvas::paintEvent(QPaintEvent *)
{
    if (m_picture.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF shown = place();
    painter.drawPixmap(shown, m_picture, QRectF(m_picture.rect()));
    // White pages end visibly.
    painter.setPen(color(Token::Line));
    if (!m_picture.hasAlpha())
        painter.drawRect(shown.adjusted(-0.5, -0.5, 0.5, 0.5));
}

void ZoomCanvas::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showCursor();
    Q_EMIT scaled();
}

void ZoomCanvas::wheelEvent(QWheelEvent *event)
{
    const double factor = std::pow(growthPerDegree, event->angleDelta().y() / unitsPerDegree);
    if (!m_picture.isNull())
        setZoom(zoomedTo(m_zoom, scale() * factor, event->position(), ground()));
    event->accept();
}

void ZoomCanvas::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_draggedFrom = event->position();
    showCursor();
}

void ZoomCanvas::mouseMoveEvent(QMouseEvent *event)
{
    if (m_draggedFrom)
        moveBy(event->position() - *std::exchange(m_draggedFrom, event->position()));
}

void ZoomCanvas::mouseReleaseEvent(QMouseEvent *)
{
    m_draggedFrom.reset();
    showCursor();
}

void ZoomCanvas::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !m_picture.isNull())
        setZoom(toggled(m_zoom, event->position(), ground()));
}

} // namespace brellin

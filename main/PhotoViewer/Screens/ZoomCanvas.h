#pragma once

#include "PhotoViewer/Zoom.h"

#include <QPixmap>
#include <QWidget>

namespace brellin {

/// Shows a picture that can be zoomed by wheel and double click and moved with the mouse.
class ZoomCanvas : public QWidget {
    Q_OBJECT
public:
    explicit ZoomCanvas(QWidget *parent);

    enum class Sharpness {
        Other, ///< another picture, which is fitted
        Same   ///< the same picture decoded again, which keeps the zoom
    };
    /// `whole` is the size at 100 %, in points; `picture` may be scaled down. A null picture shows nothing.
    void setPicture(const QPixmap &picture, const QSizeF &whole, Sharpness sharpness);
    void fit();
    /// Shows 100 % around the middle.
    void showWhole();
    void zoomBy(double factor);
    void moveBy(QPointF way);

    double scale() const { return scaleOf(m_zoom, ground()); }
    bool isFitted() const { return !m_zoom.scale; }
    /// Where the picture is painted.
    QRectF place() const { return placeOf(m_zoom, ground()); }
    /// The longest side of the painted picture in device pixels.
    int shownSide() const;

    /// Emitted when the scale changed.
    Q_SIGNAL void scaled();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    ZoomGround ground() const { return {m_whole, QSizeF(size())}; }
    void setZoom(const Zoom &zoom);
    void showCursor();

    QPixmap m_picture;
    QSizeF m_whole;
    Zoom m_zoom;
    std::optional<QPointF> m_draggedFrom;
};

} // namespace brellin

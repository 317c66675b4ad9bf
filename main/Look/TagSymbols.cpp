#include "Look/TagSymbols.h"

#include "Look/Theme.h"

#include <QPainter>
#include <QPixmap>

namespace brellin {

QIcon tagIcon(const QColor &color, TagMark mark)
{
    QIcon icon;
    for (const double pixels : {1.0, 2.0}) {
        QPixmap drawn(QSize(16, 16) * pixels);
        drawn.setDevicePixelRatio(pixels);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color.darker(118), 1));
        painter.setBrush(color);
        painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
        painter.setPen(QPen(readableOn(color), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        if (mark == TagMark::All)
            painter.drawPolyline(QPolygonF({{5, 8.3}, {7.2, 10.4}, {11, 5.9}}));
        else if (mark == TagMark::Some)
            painter.drawLine(QPointF(5.2, 8), QPointF(10.8, 8));
        painter.end();
        icon.addPixmap(drawn);
    }
    return icon;
}

} // namespace brellin

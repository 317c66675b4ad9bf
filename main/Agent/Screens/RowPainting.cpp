#include "Agent/Screens/RowPainting.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

namespace brellin {

namespace {

constexpr double rowCornerRadius = 14;
constexpr int barWidth = 3;

QPainterPath groundPath(const QRectF &row, RowEdges edges)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill); // sub-paths overlap
    path.addRoundedRect(row, rowCornerRadius, rowCornerRadius);
    const double half = row.height() / 2;
    if (!edges.testFlag(RowEdge::Top))
        path.addRect(QRectF(row.left(), row.top(), row.width(), half));
    if (!edges.testFlag(RowEdge::Bottom))
        path.addRect(QRectF(row.left(), row.top() + half, row.width(), half));
    return path.simplified();
}

} // namespace

void paintRowGround(QPainter &painter, const QRect &row, RowGround ground, RowEdges edges)
{
    if (ground == RowGround::Plain)
        return;
    const QPainterPath path = groundPath(row, edges);
    painter.fillPath(path, color(Token::AccentSoft));
    painter.save();
    painter.setClipPath(path, Qt::IntersectClip);
    painter.fillRect(QRect(row.left(), row.top(), barWidth, row.height()), color(Token::Accent));
    painter.restore();
}

void paintTick(QPainter &painter, const QRect &place, Qt::CheckState state, bool hovered, bool focused)
{
    const QRectF box = QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool on = state != Qt::Unchecked;
    painter.setPen(QPen(color(on || hovered ? Token::Accent : Token::FieldBorder), 1));
    painter.setBrush(color(on ? Token::Accent : Token::Content));
    painter.drawRoundedRect(box, 4, 4);
    if (on)
        Symbols::paint(painter, box.adjusted(1.5, 1.5, -1.5, -1.5),
                       state == Qt::Checked ? QStringLiteral("check") : QStringLiteral("minus"),
                       color(Token::OnAccent));
    if (!focused)
        return;
    painter.setPen(QPen(color(Token::Accent), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(-3, -3, 3, 3), 6, 6);
}

void paintLines(QPainter &painter, const QRect &place, const QString &text)
{
    const QFontMetrics metrics = painter.fontMetrics();
    QTextLayout layout(text, painter.font());
    QStringList lines;
    const int most = std::max(1, place.height() / metrics.height());
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(place.width());
        const bool isLast = lines.size() + 1 == most;
        lines << (isLast ? text.mid(line.textStart()) : text.mid(line.textStart(), line.textLength()));
        if (isLast)
            break;
    }
    layout.endLayout();
    int top = place.center().y() + 1 - static_cast<int>(lines.size()) * metrics.height() / 2;
    for (const QString &line : lines) {
        painter.drawText(QRect(place.left(), top, place.width(), metrics.height()), Qt::AlignVCenter,
                         metrics.elidedText(line.trimmed(), Qt::ElideRight, place.width()));
        top += metrics.height();
    }
}

} // namespace brellin

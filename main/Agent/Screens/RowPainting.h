#pragma once

#include <QFlags>
#include <QRect>
#include <QString>
#include <Qt>

class QPainter;

namespace brellin {

/// Painting shared by the rows of the agent's lists.

enum class RowGround { Plain, Selected };
/// Which edges of a row have the rounded corners of its card.
enum class RowEdge { None = 0, Top = 1, Bottom = 2 };
Q_DECLARE_FLAGS(RowEdges, RowEdge)
Q_DECLARE_OPERATORS_FOR_FLAGS(RowEdges)

/// Paints the background of a row; if selected, tinted and with an accent bar at the left.
void paintRowGround(QPainter &painter, const QRect &row, RowGround ground, RowEdges edges);
/// Paints a check box in the application's style.
void paintTick(QPainter &painter, const QRect &place, Qt::CheckState state, bool hovered, bool focused);
/// Paints as many lines of a text as fit, centred vertically; elides the last one.
void paintLines(QPainter &painter, const QRect &place, const QString &text);

} // namespace brellin

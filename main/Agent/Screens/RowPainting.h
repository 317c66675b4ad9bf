#pragma once

#include <QFlags>
#include <QRect>
#include <QString>
#include <Qt>

class QPainter;

namespace brellin {

/// Pieces that painted rows of the agent's lists have in common.

enum class RowGround { Plain, Selected };
/// Where a row's ground has the round corners of its card.
enum class RowEdge { None = 0, Top = 1, Bottom = 2 };
Q_DECLARE_FLAGS(RowEdges, RowEdge)
Q_DECLARE_OPERATORS_FOR_FLAGS(RowEdges)

/// The ground of a row on its card; a selected one is tinted and has the accent's bar at its left.
void paintRowGround(QPainter &painter, const QRect &row, RowGround ground, RowEdges edges);
/// A box to tick, as the check boxes of the look.
void paintTick(QPainter &painter, const QRect &place, Qt::CheckState state, bool hovered, bool focused);
/// A text in as many lines as fit, centred in height; the last one loses its end where there is more.
void paintLines(QPainter &painter, const QRect &place, const QString &text);

} // namespace brellin

#pragma once

#include "Agent/Screens/AgentPorts.h"

#include <QRectF>

namespace brellin {

enum class EntryShape { File, Folder };

/// Paints an entry: its thumbnail, or the icon of its type if there is none.
void paintEntry(QPainter &painter, const QRectF &place, const AgentPorts &ports, const Location &entry,
                EntryShape shape);
/// The same as a pixmap, for labels.
QPixmap entryPixmap(const AgentPorts &ports, const Location &entry, EntryShape shape, double side,
                    double pixelsPerPoint);

} // namespace brellin

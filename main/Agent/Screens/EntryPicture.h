#pragma once

#include "Agent/Screens/AgentPorts.h"

#include <QRectF>

namespace brellin {

enum class EntryShape { File, Folder };

/// Draws an entry: its thumbnail where there is one, else the folder or document that stands for it.
void paintEntry(QPainter &painter, const QRectF &place, const AgentPorts &ports, const Location &entry,
                EntryShape shape);
/// The same as a picture of its own, for a label.
QPixmap entryPixmap(const AgentPorts &ports, const Location &entry, EntryShape shape, double side,
                    double pixelsPerPoint);

} // namespace brellin

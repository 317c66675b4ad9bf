#include "Agent/Screens/EntryPicture.h"

#include "Disk/FileTypes.h"
#include "Look/EntryIcons.h"

#include <QPainter>

namespace brellin {

QPixmap entryPixmap(const AgentPorts &ports, const Location &entry, EntryShape shape, double side,
                    double pixelsPerPoint)
{
    if (shape == EntryShape::Folder)
        return EntryIcons::folder(side, pixelsPerPoint);
    if (ports.thumbnail) {
        QPixmap picture = ports.thumbnail(entry, qRound(side * pixelsPerPoint));
        if (!picture.isNull()) {
            picture.setDevicePixelRatio(pixelsPerPoint);
            return picture;
        }
    }
    const std::string name = entry.filename().native(); // owns the characters of the view below
    const std::string_view extension = extensionOf(name);
    return EntryIcons::document(shown(extension), fileCategory(extension), side, pixelsPerPoint);
}

void paintEntry(QPainter &painter, const QRectF &place, const AgentPorts &ports, const Location &entry,
                EntryShape shape)
{
    const QPixmap picture = entryPixmap(ports, entry, shape, place.height(), painter.device()->devicePixelRatioF());
    const QSizeF size = QSizeF(picture.size()) / picture.devicePixelRatio();
    painter.drawPixmap(place.center() - QPointF(size.width() / 2, size.height() / 2), picture);
}

} // namespace brellin

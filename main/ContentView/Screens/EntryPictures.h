#pragma once

#include "ContentView/FileItem.h"
#include "Features/FolderColors.h"
#include "Features/Screens/ThumbnailImages.h"

#include <QPixmap>

class QPainter;

namespace brellin {

/// Icons of entries: coloured folders, documents with a type badge, thumbnails.
class EntryPictures {
public:
    EntryPictures(const FolderColors &colors, ThumbnailImages *thumbnails) : m_colors(colors), m_thumbnails(thumbnails)
    {
    }

    /// Paints the icon centred in `place`, in points.
    void paintSymbol(QPainter &painter, const QRectF &place, const FileItem &item) const;
    /// As above, but paints a thumbnail if there is one.
    void paintLarge(QPainter &painter, const QRectF &place, const FileItem &item) const;

private:
    QPixmap symbol(const FileItem &item, double side, double pixelsPerPoint) const;

    const FolderColors &m_colors;
    ThumbnailImages *m_thumbnails;
};

/// Whether the entry's type can have a thumbnail (image, PDF, video).
bool mayHaveThumbnail(const FileItem &item);

} // namespace brellin

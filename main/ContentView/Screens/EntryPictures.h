#pragma once

#include "ContentView/FileItem.h"
#include "Features/FolderColors.h"
#include "Features/Screens/ThumbnailImages.h"

#include <QPixmap>

class QPainter;

namespace brellin {

/// What stands before a name: a folder in its colour, a document with its badge, or a small picture of its content.
class EntryPictures {
public:
    EntryPictures(const FolderColors &colors, ThumbnailImages *thumbnails) : m_colors(colors), m_thumbnails(thumbnails)
    {
    }

    /// Draws into the middle of `place` (points).
    void paintSymbol(QPainter &painter, const QRectF &place, const FileItem &item) const;
    /// The same, but with a picture of the content where there is one.
    void paintLarge(QPainter &painter, const QRectF &place, const FileItem &item) const;

private:
    QPixmap symbol(const FileItem &item, double side, double pixelsPerPoint) const;

    const FolderColors &m_colors;
    ThumbnailImages *m_thumbnails;
};

/// Whether a small picture of an entry's content may exist (an image, a PDF, a video).
bool mayHaveThumbnail(const FileItem &item);

} // namespace brellin

#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <QObject>
#include <QPixmap>

#include <memory>
#include <vector>

namespace brellin {

class Thumbnails;

/// The small pictures of entries as the views draw them, kept in memory up to a number of bytes. Nothing here waits for
/// a disk or a decoder. Lives on the main thread.
class ThumbnailImages : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailImages(Thumbnails &thumbnails, QObject *parent = nullptr);
    ~ThumbnailImages() override;

    /// The picture for an entry at most `side` device pixels wide and high, or null while there is none (asked for from
    /// now on, `ready` tells) or never will be. Of a file that has changed, or of another `side`, the picture at hand
    /// until the right one has come. Its device pixel ratio is 1: whoever draws it knows the screen.
    QPixmap pixmap(const Location &entry, Instant modified, int side);

    /// What `view` shows now, first to last: it is made first. What is asked for and no longer named is forgotten. A view
    /// that goes is forgotten by itself.
    void setVisible(QObject *view, const std::vector<Location> &entries);

    Q_SIGNAL void ready(const brellin::Location &entry);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin

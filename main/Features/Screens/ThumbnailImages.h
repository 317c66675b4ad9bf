#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <QObject>
#include <QPixmap>

#include <memory>
#include <vector>

namespace brellin {

class Thumbnails;

/// In-memory cache of the views' thumbnails, limited in bytes. Never waits for a disk or a decoder. Lives on the main
/// thread.
class ThumbnailImages : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailImages(Thumbnails &thumbnails, QObject *parent = nullptr);
    ~ThumbnailImages() override;

    /// The thumbnail of an entry, at most `side` device pixels in each direction; null while there is none. Requests it
    /// if missing; `ready` reports its arrival. For a changed file or another `side` returns the present one until the
    /// new one arrives. Its device pixel ratio is 1; the caller must scale it for its screen.
    QPixmap pixmap(const Location &entry, Instant modified, int side);

    /// Sets the entries visible in `view`, in order: their thumbnails are made first, and requests for others are
    /// dropped. Ends with the view's destruction.
    void setVisible(QObject *view, const std::vector<Location> &entries);

    Q_SIGNAL void ready(const brellin::Location &entry);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin

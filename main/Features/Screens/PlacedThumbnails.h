#pragma once

#include "Base/Instant.h"
#include "Base/Job.h"
#include "Base/Location.h"
#include "Disk/Volumes.h"

#include <QPixmap>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brellin {

class ThumbnailImages;

/// Thumbnails for lists that know only the paths of their entries. Reads modification times on a worker, on local
/// volumes only; painting never waits. Lives on the main thread.
class PlacedThumbnails {
public:
    /// Both must outlive this object and its workers.
    PlacedThumbnails(ThumbnailImages &images, const Volumes &volumes);
    ~PlacedThumbnails();

    /// Like ThumbnailImages::pixmap; `ThumbnailImages::ready` reports new ones.
    QPixmap pixmap(const Location &entry, int side);

private:
    using Times = std::vector<std::pair<Location, std::optional<Instant>>>;
    struct Known {
        std::optional<Instant> modified; ///< nullopt: not read yet, or not a readable file
        std::chrono::steady_clock::time_point read;
        bool wanted = false;
    };

    void read();
    void arrived(const Times &times);

    ThumbnailImages &m_images;
    const Volumes &m_volumes;
    std::unordered_map<std::string, Known> m_known;
    std::vector<Location> m_wanted;
    QTimer m_soon; ///< coalesces the rows of one repaint
    const std::shared_ptr<QThreadPool> m_pool;
    Job<Times> m_reading;
};

} // namespace brellin

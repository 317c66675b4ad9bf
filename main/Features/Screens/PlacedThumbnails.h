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

/// The thumbnails for a list that knows no more of its entries than where they are. When each was changed is read on a
/// worker, of local volumes only, while painting asks for nothing but memory. Lives on the main thread.
class PlacedThumbnails {
public:
    /// Both outlive it and its work.
    PlacedThumbnails(ThumbnailImages &images, const Volumes &volumes);
    ~PlacedThumbnails();

    /// As ThumbnailImages::pixmap; `ThumbnailImages::ready` tells of one that has come.
    QPixmap pixmap(const Location &entry, int side);

private:
    using Times = std::vector<std::pair<Location, std::optional<Instant>>>;
    struct Known {
        std::optional<Instant> modified; ///< none: not read yet, or no file that may be read
        std::chrono::steady_clock::time_point read;
        bool wanted = false;
    };

    void read();
    void arrived(const Times &times);

    ThumbnailImages &m_images;
    const Volumes &m_volumes;
    std::unordered_map<std::string, Known> m_known;
    std::vector<Location> m_wanted;
    QTimer m_soon; ///< the rows of one painting are read together
    const std::shared_ptr<QThreadPool> m_pool;
    Job<Times> m_reading;
};

} // namespace brellin

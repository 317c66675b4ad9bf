#pragma once

#include "Base/Instant.h"
#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QObject>
#include <QPixmap>

#include <map>
#include <memory>
#include <string>

namespace brellin {

class ThumbnailImages;

/// Pictures shown instead of symbols. Their modification times are read on a worker, since they may lie on a server
/// that does not respond.
class EntryImages : public QObject {
    Q_OBJECT
public:
    /// If `source` is null, there are no pictures.
    EntryImages(ThumbnailImages *source, QObject *parent);

    /// Null until the picture is loaded; `changed` is emitted then. `side` is in pixels.
    QPixmap pixmap(const Location &image, int side);

    Q_SIGNAL void changed();

private:
    struct Known {
        bool there = false;
        Instant modified;
        Job<Result<Instant>> reading;
    };

    ThumbnailImages *m_source;
    std::shared_ptr<QThreadPool> m_pool;
    std::map<std::string, std::unique_ptr<Known>> m_known; ///< keyed by path
};

} // namespace brellin

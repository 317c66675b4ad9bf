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

/// The pictures that stand in place of symbols. When a picture was changed last is read on a worker: it may lie on a server
/// that does not answer.
class EntryImages : public QObject {
    Q_OBJECT
public:
    /// Without a source there are no pictures.
    EntryImages(ThumbnailImages *source, QObject *parent);

    /// Null while there is none; `changed` tells.
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
    std::map<std::string, std::unique_ptr<Known>> m_known; ///< by path
};

} // namespace brellin

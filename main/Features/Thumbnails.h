#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/Volumes.h"
#include "Features/ThumbnailMaking.h"
#include "System/UserDefaults.h"

#include <QThreadPool>

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace brellin {

/// Makes the requested thumbnails on workers, a few at a time and in order of request. Lives on the main thread;
/// settings, volumes and decoder must outlive it.
class Thumbnails : public Model<Thumbnails> {
public:
    /// `cacheFolder` is `ThumbnailCache::usualFolder()`, except in tests.
    Thumbnails(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Location cacheFolder);
    ~Thumbnails() override;

    using Heard = std::function<void(const ThumbnailWish &, const Thumbnail &)>;
    /// Requests thumbnails, most urgent first. Replaces the owner's previous request; work nobody wants any more is
    /// cancelled. `heard` is called once per thumbnail, on the main thread and never from within this call. Ends with
    /// the owner's destruction.
    void request(QObject *owner, std::vector<ThumbnailWish> wishes, Heard heard);

private:
    struct Order {
        QObject *owner = nullptr;
        std::deque<ThumbnailWish> open;           ///< not answered yet
        std::deque<ThumbnailWish> waiting;        ///< those of them not in progress; next one first
        std::deque<ThumbnailWish> networkWaiting; ///< those of them on network volumes
        Heard heard;
    };
    /// Makes one thumbnail at a time. Network volumes have a lane of their own, so that an unresponsive server blocks
    /// only that.
    struct Lane {
        std::shared_ptr<QThreadPool> pool;
        Job<Thumbnail> job;
        ThumbnailWish wish;
        bool network = false;
        bool givenUp = false;
    };

    Order &orderOf(QObject *owner);
    void endOrder(const QObject *owner);
    bool isWanted(const ThumbnailWish &wish) const;
    bool isAtWork(const ThumbnailWish &wish) const;
    void giveUpUnwanted();
    void serveSoon();
    void serve();
    std::optional<ThumbnailWish> next(const Lane &lane);
    std::optional<ThumbnailWish> nextLocal(Order &order);
    bool admits(const Location &entry) const;
    void start(Lane &lane, const ThumbnailWish &wish);
    void finished(Lane &lane, const Thumbnail &thumbnail);
    void answer(const ThumbnailWish &wish, const Thumbnail &thumbnail);

    const UserDefaults &m_defaults;
    const Volumes &m_volumes;
    Decoder &m_decoder;
    const std::shared_ptr<const ThumbnailCache> m_cache;
    std::vector<Order> m_orders; ///< the latest first
    std::array<Lane, 3> m_lanes;
    bool m_serving = false;
};

} // namespace brellin

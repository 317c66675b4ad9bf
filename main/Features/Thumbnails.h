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

/// Has the thumbnails made that somebody wants to see, a few at a time and in the order of the wishes. Lives on the main
/// thread; settings, volumes and decoder outlive it.
class Thumbnails : public Model<Thumbnails> {
public:
    /// `cacheFolder` is `ThumbnailCache::usualFolder()`, but for tests.
    Thumbnails(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Location cacheFolder);
    ~Thumbnails() override;

    using Heard = std::function<void(const ThumbnailWish &, const Thumbnail &)>;
    /// What `owner` wants to see, the most urgent first; replaces the earlier wishes, and what nobody wants any more is
    /// given up. `heard` is called once for each, on the main thread and never from within this call. The owner's
    /// death ends his wishes.
    void request(QObject *owner, std::vector<ThumbnailWish> wishes, Heard heard);

private:
    struct Order {
        QObject *owner = nullptr;
        std::deque<ThumbnailWish> open;           ///< not answered yet
        std::deque<ThumbnailWish> waiting;        ///< of these, not at work on either; the first next
        std::deque<ThumbnailWish> networkWaiting; ///< of these, those on network volumes
        Heard heard;
    };
    /// One picture at a time. Network volumes have a lane of their own: a server that does not answer holds up no others.
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

#include "Features/Thumbnails.h"

#include "Base/AbandonablePool.h"
#include "Features/NetworkSettings.h"

#include <QPointer>

#include <algorithm>

namespace brellin {

using namespace std::chrono_literals;

namespace {

bool has(const std::deque<ThumbnailWish> &wishes, const ThumbnailWish &wish)
{
    return std::ranges::find(wishes, wish) != wishes.end();
}

std::optional<ThumbnailWish> takeFirst(std::deque<ThumbnailWish> &wishes)
{
    if (wishes.empty())
        return std::nullopt;
    ThumbnailWish wish = std::move(wishes.front());
    wishes.pop_front();
    return wish;
}

} // namespace

Thumbnails::Thumbnails(const UserDefaults &defaults, const Volumes &volumes, Decoder &decoder, Location cacheFolder)
    : m_defaults(defaults)
    , m_volumes(volumes)
    , m_decoder(decoder)
    , m_cache(std::make_shared<const ThumbnailCache>(std::move(cacheFolder)))
{
    for (Lane &lane : m_lanes)
        lane.pool = abandonablePool(2s);
    m_lanes.back().network = true;
}

Thumbnails::~Thumbnails() = default;

void Thumbnails::request(QObject *owner, std::vector<ThumbnailWish> wishes, Heard heard)
{
    Order &order = orderOf(owner);
    order.heard = std::move(heard);
    order.open.clear();
    order.waiting.clear();
    order.networkWaiting.clear();
    for (ThumbnailWish &wish : wishes) {
        if (!isAtWork(wish))
            order.waiting.push_back(wish);
        order.open.push_back(std::move(wish));
    }
    giveUpUnwanted();
    serveSoon();
}

/// The owner's request, moved to the front.
Thumbnails::Order &Thumbnails::orderOf(QObject *owner)
{
    const auto found = std::ranges::find(m_orders, owner, &Order::owner);
    if (found == m_orders.end()) {
        m_orders.insert(m_orders.begin(), Order{owner, {}, {}, {}, {}});
        connect(owner, &QObject::destroyed, this, [this, owner] { endOrder(owner); });
    } else {
        std::rotate(m_orders.begin(), found, found + 1);
    }
    return m_orders.front();
}

void Thumbnails::endOrder(const QObject *owner)
{
    std::erase_if(m_orders, [&](const Order &order) { return order.owner == owner; });
    giveUpUnwanted();
}

bool Thumbnails::isWanted(const ThumbnailWish &wish) const
{
    return std::ranges::any_of(m_orders, [&](const Order &order) { return has(order.open, wish); });
}

bool Thumbnails::isAtWork(const ThumbnailWish &wish) const
{
    return std::ranges::any_of(
        m_lanes, [&](const Lane &lane) { return lane.job.running() && !lane.givenUp && lane.wish == wish; });
}

void Thumbnails::giveUpUnwanted()
{
    for (Lane &lane : m_lanes) {
        if (!lane.job.running() || lane.givenUp || isWanted(lane.wish))
            continue;
        lane.givenUp = true;
        lane.job.cancel();
    }
}

/// Posted, so that no callback runs inside request().
void Thumbnails::serveSoon()
{
    if (m_serving)
        return;
    m_serving = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_serving = false;
            serve();
        },
        Qt::QueuedConnection);
}

void Thumbnails::serve()
{
    for (Lane &lane : m_lanes) {
        if (lane.job.running())
            continue;
        if (const std::optional<ThumbnailWish> wish = next(lane))
            start(lane, *wish);
    }
}

std::optional<ThumbnailWish> Thumbnails::next(const Lane &lane)
{
    for (Order &order : m_orders) {
        while (const auto wish = lane.network ? takeFirst(order.networkWaiting) : nextLocal(order)) {
            if (!isAtWork(*wish))
                return wish;
        }
    }
    return std::nullopt;
}

/// Moves requests for network volumes to their own queue.
std::optional<ThumbnailWish> Thumbnails::nextLocal(Order &order)
{
    while (std::optional<ThumbnailWish> wish = takeFirst(order.waiting)) {
        if (m_volumes.isLocal(wish->entry))
            return wish;
        order.networkWaiting.push_back(*std::move(wish));
    }
    return std::nullopt;
}

bool Thumbnails::admits(const Location &entry) const
{
    return m_volumes.isLocal(entry) || thumbnailsNetwork.isOn(m_defaults);
}

void Thumbnails::start(Lane &lane, const ThumbnailWish &wish)
{
    lane.wish = wish;
    lane.givenUp = false;
    const bool admitted = admits(wish.entry);
    lane.job.start(
        *lane.pool,
        [wish, admitted, cache = m_cache, decoder = &m_decoder](JobControl &control) {
            if (!admitted)
                return Thumbnail{Thumbnail::Outcome::NotNow, std::nullopt, std::nullopt};
            return makeThumbnail(wish, *cache, *decoder, control);
        },
        [this, &lane](const Thumbnail &thumbnail) { finished(lane, thumbnail); });
}

void Thumbnails::finished(Lane &lane, const Thumbnail &thumbnail)
{
    const ThumbnailWish wish = lane.wish;
    const bool givenUp = lane.givenUp;
    serveSoon();
    if (!givenUp)
        answer(wish, thumbnail);
}

void Thumbnails::answer(const ThumbnailWish &wish, const Thumbnail &thumbnail)
{
    std::vector<std::pair<QPointer<QObject>, Heard>> all;
    for (Order &order : m_orders) {
        if (std::erase(order.open, wish) == 0)
            continue;
        std::erase(order.waiting, wish);
        std::erase(order.networkWaiting, wish);
        all.emplace_back(order.owner, order.heard);
    }
    // Callbacks may start new requests or destroy receivers.
    for (const auto &[owner, heard] : all) {
        if (owner)
            heard(wish, thumbnail);
    }
}

} // namespace brellin

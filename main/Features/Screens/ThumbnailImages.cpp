#include "Features/Screens/ThumbnailImages.h"

#include "Features/Screens/ThumbnailPixels.h"
#include "Features/Thumbnails.h"
#include "System/ReadWhole.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace brellin {

namespace {

constexpr qsizetype mostKilobytes = 96 * 1024;
/// Limit for remembered entries without a thumbnail.
constexpr std::size_t mostAbsent = 50'000;

/// A thumbnail in the size of the cache, so that other tile sizes need no new one.
struct Held {
    QPixmap pixmap;
    Instant modified;
    int side = 0;
    QPixmap reduced; ///< scaled to the size requested last
    int reducedSide = 0;

    QPixmap within(int wanted)
    {
        if (pixmap.width() <= wanted && pixmap.height() <= wanted)
            return pixmap;
        if (reducedSide != wanted)
            reduced = pixmap.scaled(wanted, wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        reducedSide = wanted;
        return reduced;
    }
};

struct Wanted {
    Instant modified;
    int side = 0;
    bool answered = false; ///< answered, and the image is being loaded
};

/// Runs on a worker: the image of a thumbnail, no larger than `side`.
QImage loaded(const Thumbnail &thumbnail, int side)
{
    QImage image;
    if (thumbnail.picture)
        image = imageOf(*thumbnail.picture);
    else if (thumbnail.png)
        image.loadFromData(readWhole(*thumbnail.png).value_or(QByteArray()), "PNG");
    if (image.width() > side || image.height() > side)
        image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

} // namespace

struct ThumbnailImages::Private {
    Private(ThumbnailImages &images, Thumbnails &thumbnails) : q(images), source(thumbnails)
    {
        held.setMaxCost(mostKilobytes);
        asking.setSingleShot(true);
        QObject::connect(&asking, &QTimer::timeout, &q, [this] { ask(); });
        loaders.setMaxThreadCount(1);
    }

    void want(const std::string &path, const Wanted &wish);
    void ask();
    std::vector<ThumbnailWish> wishes() const;
    void heard(const ThumbnailWish &wish, const Thumbnail &thumbnail);
    void markAnswered(const ThumbnailWish &wish);
    void loadNext();
    void keep(const ThumbnailWish &wish, const QImage &image);
    void nothingFor(const ThumbnailWish &wish);
    void forgetInvisible();

    struct Loading {
        ThumbnailWish wish;
        Thumbnail thumbnail;
    };

    ThumbnailImages &q;
    Thumbnails &source;
    QCache<QByteArray, Held> held;
    std::unordered_map<std::string, Wanted> wanted;  ///< requested and not answered
    std::vector<std::string> order;                  ///< in order of request
    std::unordered_map<std::string, Instant> absent; ///< there is no thumbnail of this version of the entry
    std::unordered_set<std::string> perhapsLater;    ///< absent for a temporary reason: retried when shown again
    std::map<QObject *, std::vector<std::string>> visible;
    std::deque<Loading> toLoad;
    QTimer asking;
    QThreadPool loaders;
    Job<QImage> loading; ///< destroyed first, which cancels its work before the pool waits
};

void ThumbnailImages::Private::want(const std::string &path, const Wanted &wish)
{
    const auto gone = absent.find(path);
    if ((gone != absent.end() && gone->second == wish.modified) ||
        !canHaveThumbnail(Location(path).filename().native()))
        return;
    const auto known = wanted.find(path);
    if (known != wanted.end() && known->second.modified == wish.modified && known->second.side >= wish.side)
        return;
    if (known == wanted.end())
        order.push_back(path);
    wanted.insert_or_assign(path, wish);
    asking.start(0);
}

std::vector<ThumbnailWish> ThumbnailImages::Private::wishes() const
{
    std::vector<ThumbnailWish> list;
    std::unordered_set<std::string_view> listed;
    const auto add = [&](const std::string &path) {
        const auto found = wanted.find(path);
        if (found != wanted.end() && !found->second.answered && listed.insert(path).second)
            list.push_back({path, found->second.modified, found->second.side});
    };
    for (const auto &[view, entries] : visible)
        std::ranges::for_each(entries, add);
    std::ranges::for_each(order, add);
    return list;
}

void ThumbnailImages::Private::ask()
{
    source.request(&q, wishes(),
                   [this](const ThumbnailWish &wish, const Thumbnail &thumbnail) { heard(wish, thumbnail); });
}

void ThumbnailImages::Private::heard(const ThumbnailWish &wish, const Thumbnail &thumbnail)
{
    switch (thumbnail.outcome) {
    case Thumbnail::Outcome::Made:
        markAnswered(wish);
        toLoad.push_back({wish, thumbnail});
        loadNext();
        break;
    case Thumbnail::Outcome::NotNow:
        perhapsLater.insert(wish.entry.native());
        nothingFor(wish);
        break;
    case Thumbnail::Outcome::None:
    case Thumbnail::Outcome::Changed:
        nothingFor(wish);
        break;
    case Thumbnail::Outcome::Cancelled:
        break;
    }
}

/// If the file has changed meanwhile, its view requests it again once it knows the new time.
void ThumbnailImages::Private::nothingFor(const ThumbnailWish &wish)
{
    const std::string &path = wish.entry.native();
    const auto found = wanted.find(path);
    if (found == wanted.end() || found->second.modified != wish.modified)
        return;
    wanted.erase(found);
    std::erase(order, path);
    if (absent.size() >= mostAbsent)
        absent.clear();
    absent.insert_or_assign(path, wish.modified);
    if (held.remove(QByteArray::fromStdString(path)))
        Q_EMIT q.ready(wish.entry);
}

void ThumbnailImages::Private::markAnswered(const ThumbnailWish &wish)
{
    const auto found = wanted.find(wish.entry.native());
    if (found != wanted.end() && found->second.modified == wish.modified && found->second.side == wish.side)
        found->second.answered = true;
}

void ThumbnailImages::Private::loadNext()
{
    if (loading.running() || toLoad.empty())
        return;
    const Loading next = std::move(toLoad.front());
    toLoad.pop_front();
    loading.start(
        loaders, [next](JobControl &) { return loaded(next.thumbnail, next.wish.side); },
        [this, wish = next.wish](const QImage &image) {
            loadNext();
            keep(wish, image);
        });
}

void ThumbnailImages::Private::keep(const ThumbnailWish &wish, const QImage &image)
{
    if (image.isNull()) {
        nothingFor(wish);
        return;
    }
    const std::string &path = wish.entry.native();
    const auto found = wanted.find(path);
    if (found != wanted.end() && found->second.modified == wish.modified && found->second.side == wish.side) {
        wanted.erase(found);
        std::erase(order, path);
    }
    const qsizetype cost = image.sizeInBytes() / 1024 + 1;
    held.insert(QByteArray::fromStdString(path), new Held{QPixmap::fromImage(image), wish.modified, wish.side, {}, 0},
                cost);
    Q_EMIT q.ready(wish.entry);
}

void ThumbnailImages::Private::forgetInvisible()
{
    std::unordered_set<std::string_view> shown;
    for (const auto &[view, entries] : visible)
        shown.insert(entries.begin(), entries.end());
    const auto isHidden = [&](const std::string &path) { return !shown.contains(path); };
    std::erase_if(wanted, [&](const auto &one) { return isHidden(one.first); });
    std::erase_if(order, isHidden);
    std::erase_if(perhapsLater, [&](const std::string &path) {
        if (isHidden(path))
            absent.erase(path);
        return isHidden(path);
    });
    asking.start(0);
}

ThumbnailImages::ThumbnailImages(Thumbnails &thumbnails, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, thumbnails))
{
}

ThumbnailImages::~ThumbnailImages() = default;

QPixmap ThumbnailImages::pixmap(const Location &entry, Instant modified, int side)
{
    const std::string &path = entry.native();
    Held *held = d->held.object(QByteArray::fromStdString(path));
    const int kept = ThumbnailCache::keptSide(side);
    if (!held || held->modified != modified || held->side < kept)
        d->want(path, {modified, kept, false});
    return held ? held->within(side) : QPixmap();
}

void ThumbnailImages::setVisible(QObject *view, const std::vector<Location> &entries)
{
    if (!d->visible.contains(view))
        connect(view, &QObject::destroyed, this, [this, view] {
            d->visible.erase(view);
            d->forgetInvisible();
        });
    std::vector<std::string> &paths = d->visible[view];
    paths.clear();
    for (const Location &entry : entries)
        paths.push_back(entry.native());
    d->forgetInvisible();
}

} // namespace brellin

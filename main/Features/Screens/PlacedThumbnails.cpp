#include "Features/Screens/PlacedThumbnails.h"

#include "Base/AbandonablePool.h"
#include "Disk/FileAttributes.h"
#include "Features/Screens/ThumbnailImages.h"

#include <utility>

namespace brellin {

namespace {

using std::chrono::steady_clock;

/// Modification times older than this are re-read on the next repaint.
constexpr std::chrono::seconds freshness{2};
/// Limit of the cache; beyond it everything is dropped and re-read on demand.
constexpr std::size_t mostKnown = 20'000;

/// Runs on a worker. Skips volumes that may not respond.
std::optional<Instant> changeOf(const Location &entry, const Volumes &volumes)
{
    if (!volumes.isLocal(entry))
        return std::nullopt;
    const Result<FileAttributes> attributes = readAttributes(entry);
    return attributes && attributes->isFile() ? std::optional(attributes->modified) : std::nullopt;
}

} // namespace

PlacedThumbnails::PlacedThumbnails(ThumbnailImages &images, const Volumes &volumes)
    : m_images(images)
    , m_volumes(volumes)
    , m_pool(abandonablePool())
{
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, [this] { read(); });
}

PlacedThumbnails::~PlacedThumbnails() = default;

QPixmap PlacedThumbnails::pixmap(const Location &entry, int side)
{
    if (m_known.size() > mostKnown)
        m_known.clear();
    Known &known = m_known[entry.native()];
    if (!known.wanted && steady_clock::now() - known.read > freshness) {
        known.wanted = true;
        m_wanted.push_back(entry);
        m_soon.start(0);
    }
    return known.modified ? m_images.pixmap(entry, *known.modified, side) : QPixmap();
}

void PlacedThumbnails::read()
{
    if (m_wanted.empty() || m_reading.running())
        return;
    m_reading.start(
        *m_pool,
        [wanted = std::exchange(m_wanted, {}), &volumes = m_volumes](JobControl &control) {
            Times times;
            for (const Location &entry : wanted)
                times.emplace_back(entry, control.cancelled() ? std::nullopt : changeOf(entry, volumes));
            return times;
        },
        [this](const Times &times) { arrived(times); });
}

void PlacedThumbnails::arrived(const Times &times)
{
    for (const auto &[entry, modified] : times) {
        Known &known = m_known[entry.native()];
        const bool changed = std::exchange(known.modified, modified) != modified;
        known.read = steady_clock::now();
        known.wanted = false;
        if (changed)
            Q_EMIT m_images.ready(entry);
    }
    read();
}

} // namespace brellin

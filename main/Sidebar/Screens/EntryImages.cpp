#include "Sidebar/Screens/EntryImages.h"

#include "Base/AbandonablePool.h"
#include "Disk/FileAttributes.h"
#include "Features/Screens/ThumbnailImages.h"

namespace brellin {

EntryImages::EntryImages(ThumbnailImages *source, QObject *parent)
    : QObject(parent)
    , m_source(source)
    , m_pool(abandonablePool())
{
    if (m_source)
        connect(m_source, &ThumbnailImages::ready, this, [this](const Location &image) {
            if (m_known.contains(image.native()))
                Q_EMIT changed();
        });
}

QPixmap EntryImages::pixmap(const Location &image, int side)
{
    if (!m_source)
        return {};
    std::unique_ptr<Known> &known = m_known[image.native()];
    if (known)
        return known->there ? m_source->pixmap(image, known->modified, side) : QPixmap();
    known = std::make_unique<Known>();
    known->reading.start(
        *m_pool, [image](JobControl &) -> Result<Instant> { return TRY(readAttributes(image)).modified; },
        [this, entry = known.get()](const Result<Instant> &modified) {
            entry->there = modified.has_value();
            entry->modified = modified.value_or(Instant());
            Q_EMIT changed();
        });
    return {};
}

} // namespace brellin

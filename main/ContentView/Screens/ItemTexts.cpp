#include "ContentView/Screens/ItemTexts.h"

#include "Base/German.h"
#include "Base/RecentDate.h"

namespace brellin {

QString shortDateText(Instant instant, QDate today)
{
    if (instant == Instant::min())
        return {};
    return recentDate(instant, today, OlderDay::Short);
}

QString folderSizeText(const std::optional<FolderSize> &size)
{
    if (!size)
        return {};
    const QString bytes = sizeText(size->bytes);
    return size->state == FolderSize::State::Capped ? QStringLiteral("mehr als ") + bytes : bytes;
}

QString spokenText(const FileItem &item, const QString &size, const QString &passage, QDate today)
{
    QStringList parts{item.name(), item.kind};
    for (const QString &part : {size, shortDateText(item.modified, today)})
        if (!part.isEmpty())
            parts.append(part);
    if (!item.tags.isEmpty())
        parts.append(QStringLiteral("Markierungen: ") + item.tags.join(QStringLiteral(", ")));
    if (!passage.isEmpty())
        parts.append(passage);
    return parts.join(QStringLiteral(", "));
}

} // namespace brellin

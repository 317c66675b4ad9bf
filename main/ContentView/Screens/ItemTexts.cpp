#include "ContentView/Screens/ItemTexts.h"

#include "Base/German.h"

#include <QDateTime>

namespace brellin {

QString shortDateText(Instant instant, QDate today)
{
    if (instant == Instant::min())
        return {};
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch()).count());
    const qint64 days = local.date().daysTo(today);
    if (days == 0)
        return QStringLiteral("heute, ") + german().toString(local, QStringLiteral("HH:mm"));
    if (days == 1)
        return QStringLiteral("gestern, ") + german().toString(local, QStringLiteral("HH:mm"));
    return german().toString(local, QStringLiteral("d. MMM yyyy"));
}

QString folderSizeText(const std::optional<FolderSize> &size)
{
    if (!size)
        return {};
    const QString bytes = sizeText(size->bytes);
    return size->state == FolderSize::State::Capped ? QStringLiteral("mehr als ") + bytes : bytes;
}

QString spokenText(const FileItem &item, const QString &size, QDate today)
{
    QStringList parts{item.name(), item.kind};
    for (const QString &part : {size, shortDateText(item.modified, today)})
        if (!part.isEmpty())
            parts.append(part);
    if (!item.tags.isEmpty())
        parts.append(QStringLiteral("Markierungen: ") + item.tags.join(QStringLiteral(", ")));
    return parts.join(QStringLiteral(", "));
}

} // namespace brellin

#include "ContentView/Screens/ItemTexts.h"

#include "Base/German.h"
#include "Base/RecentDate.h"
#include "FileOperations/EntryFacts.h"

namespace brellin {

QString titleOf(SortKey key)
{
    switch (key) {
    case SortKey::Name:
        return QStringLiteral("Name");
    case SortKey::Size:
        return QStringLiteral("Größe");
    case SortKey::Modified:
        return QStringLiteral("Geändert");
    case SortKey::Kind:
        return QStringLiteral("Art");
    case SortKey::Tags:
        return QStringLiteral("Markierungen");
    case SortKey::Folder:
        return QStringLiteral("Ort");
    case SortKey::Created:
        return QStringLiteral("Erstellt");
    case SortKey::Accessed:
        return QStringLiteral("Geöffnet");
    case SortKey::Owner:
        return QStringLiteral("Eigentümer");
    case SortKey::Rights:
        return QStringLiteral("Rechte");
    }
    return {};
}

QString rightsText(const FileItem &item)
{
    if (item.link != LinkState::None || item.details == EntryDetails())
        return {};
    return modeText(item.details.mode, item.isFolder ? EntryKind::Folder : EntryKind::File);
}

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

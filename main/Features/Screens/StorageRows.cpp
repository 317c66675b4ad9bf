#include "Features/Screens/StorageRows.h"

#include "Base/German.h"
#include "Disk/FileTypes.h"
#include "Look/EntryIcons.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <utility>

namespace brellin {

namespace {

using Kind = StorageEntry::Kind;

/// The joined small files have the location of their folder, so the key needs the kind too.
std::pair<std::string, bool> keyOf(const StorageEntry &entry)
{
    return {entry.location.native(), entry.kind == Kind::SmallFiles};
}

QColor folderColor(const std::string &name)
{
    const std::array categories{QStringLiteral("Bilder"),  QStringLiteral("Videos"),    QStringLiteral("Musik"),
                                QStringLiteral("Archive"), QStringLiteral("Dokumente"), QStringLiteral("Programme")};
    return EntryIcons::badgeColor({}, categories[std::hash<std::string>()(name) % categories.size()]);
}

} // namespace

QColor storageColor(const StorageEntry &entry)
{
    const std::string name = entry.location.filename().native();
    if (entry.kind == Kind::SmallFiles)
        return EntryIcons::badgeColor({}, QStringLiteral("Sonstige"));
    if (entry.kind == Kind::Folder)
        return folderColor(name);
    const std::string extension = lowerExtensionOf(name);
    return EntryIcons::badgeColor(shown(std::string_view(extension)), fileCategory(extension));
}

QString storageText(const StorageEntry &entry)
{
    const QString text = QStringLiteral("%1, %2").arg(entry.name, sizeText(entry.bytes));
    return entry.kind == Kind::File
               ? text
               : text + u", "_qs + counted(entry.files, QStringLiteral("Datei"), QStringLiteral("Dateien"));
}

StorageRows::StorageRows(StorageOverview &overview, QObject *parent)
    : QAbstractListModel(parent)
    , m_entries(overview.entries.get())
{
    overview.entries.observe(this, [this](const std::vector<StorageEntry> &next) { follow(next); });
}

void StorageRows::follow(const std::vector<StorageEntry> &next)
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before) {
        const StorageEntry *const old = entry(index);
        const auto found = old ? std::ranges::find(next, keyOf(*old), keyOf) : next.end();
        after << (found == next.end() ? QModelIndex() : createIndex(static_cast<int>(found - next.begin()), 0));
    }
    m_entries = next;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

const StorageEntry *StorageRows::entry(const QModelIndex &index) const
{
    return index.isValid() && std::cmp_less(index.row(), m_entries.size())
               ? &m_entries[static_cast<std::size_t>(index.row())]
               : nullptr;
}

QModelIndex StorageRows::indexOf(const Location &location) const
{
    const auto found = std::ranges::find_if(m_entries, [&location](const StorageEntry &one) {
        return one.kind != Kind::SmallFiles && isAtOrBelow(location, one.location);
    });
    return found == m_entries.end() ? QModelIndex() : index(static_cast<int>(found - m_entries.begin()));
}

int StorageRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant StorageRows::data(const QModelIndex &index, int role) const
{
    const StorageEntry *const one = entry(index);
    if (!one)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return one->name;
    case Qt::ToolTipRole:
        return QString(shown(one->location) + u'\n' + storageText(*one));
    case Qt::AccessibleTextRole:
        return storageText(*one);
    default:
        return {};
    }
}

} // namespace brellin

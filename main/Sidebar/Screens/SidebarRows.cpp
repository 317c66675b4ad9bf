#include "Sidebar/Screens/SidebarRows.h"

#include "Base/German.h"
#include "Features/FileTags.h"
#include "Features/FolderColors.h"
#include "Places/KnownFolders.h"
#include "Places/VolumeList.h"
#include "Sidebar/FoldedSections.h"
#include "Sidebar/FolderTree.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/VolumeTexts.h"

#include <algorithm>

namespace brellin {

namespace {

using Rows = std::vector<SidebarRow>;

QString keyOf(const QString &kind, const Location &folder)
{
    return kind + QString::fromLatin1(QByteArray::fromStdString(folder.native()).toPercentEncoding("/"));
}

std::optional<QColor> colorOf(const std::optional<QString> &tagName)
{
    const std::optional<std::uint32_t> rgb = tagName ? FileTags::color(*tagName) : std::nullopt;
    return rgb ? std::optional(QColor::fromRgb(*rgb)) : std::nullopt;
}

SidebarRow placeRow(const QString &title, const QString &symbol, const SidebarItem &choice, const QString &toolTip = {})
{
    SidebarRow row;
    row.key = QStringLiteral("place:") + title;
    row.title = title;
    row.choice = choice;
    row.symbol = symbol;
    row.toolTip = toolTip;
    return row;
}

SidebarRow quickRow(const QuickEntry &entry)
{
    SidebarRow row;
    row.kind = SidebarRow::Kind::Quick;
    row.key = QStringLiteral("quick:") + entry.id.toString(QUuid::WithoutBraces);
    row.title = entry.name;
    row.choice = entry.path ? SidebarItem::quick(*entry.path) : SidebarItem::photos();
    row.toolTip = entry.path ? shown(*entry.path) : entry.name;
    row.symbol = entry.symbol;
    row.image = entry.imagePath;
    row.entry = entry.id;
    row.colorName = entry.color;
    row.color = colorOf(entry.color);
    return row;
}

SidebarRow volumeRow(const VolumeEntry &volume)
{
    SidebarRow row;
    row.kind = SidebarRow::Kind::Volume;
    row.key = keyOf(QStringLiteral("volume:"), volume.root);
    row.title = volume.name;
    row.choice = SidebarItem::place(volume.root);
    row.symbol = volumeSymbol(volume);
    row.note = volumeNote(volume);
    row.toolTip = volumeToolTip(volume);
    row.used = usedShare(volume);
    row.ejectable = volume.ejectable;
    return row;
}

QString accessibleText(const SidebarRow &row)
{
    QStringList parts{row.title};
    if (!row.note.isEmpty())
        parts << row.note;
    if (row.badge > 0)
        parts << counted(row.badge, QStringLiteral("Vorschlag"), QStringLiteral("Vorschläge"));
    if (row.kind == SidebarRow::Kind::Section)
        parts << (row.expanded ? QStringLiteral("aufgeklappt") : QStringLiteral("zugeklappt"));
    if (row.kind == SidebarRow::Kind::Folder && row.expandable)
        parts << (row.expanded ? QStringLiteral("geöffnet") : QStringLiteral("geschlossen"));
    return parts.join(QStringLiteral(", "));
}

} // namespace

SidebarRows::SidebarRows(SidebarSources sources, Half half, QObject *parent)
    : QAbstractListModel(parent)
    , m_sources(sources)
    , m_half(half)
{
    m_sources.folded.folded.observe(this, [this](const auto &) { rebuild(); });
    if (half == Half::Marks) {
        rebuild();
        return;
    }
    takeRoots();
    rebuild();
    m_sources.pins.entries.observe(this, [this](const auto &) { rebuild(); });
    m_sources.tree.rows.observe(this, [this](const auto &) { rebuild(); });
    m_sources.colors.observe(this, [this](const Location &) { rebuild(); });
    m_sources.volumes.volumes.observe(this, [this](const auto &) {
        takeRoots();
        rebuild();
    });
}

void SidebarRows::takeRoots()
{
    std::vector<FolderTreeRoot> roots{{m_sources.folders.home, QStringLiteral("Benutzerordner")}};
    for (const VolumeEntry &volume : m_sources.volumes.volumes.get())
        roots.push_back({volume.root, volume.name});
    m_sources.tree.setRoots(std::move(roots));
}

void SidebarRows::rebuild()
{
    Rows rows;
    if (m_half == Half::Places) {
        addQuick(rows);
        addFolders(rows);
        addDevices(rows);
    } else {
        addTags(rows);
        addAssistants(rows);
    }
    follow(std::move(rows));
}

/// Adds a section head; returns whether the section is unfolded.
bool SidebarRows::addHead(Rows &rows, const QString &key, const QString &title) const
{
    SidebarRow row;
    row.kind = SidebarRow::Kind::Section;
    row.key = key;
    row.title = title;
    row.expanded = !m_sources.folded.folded.get().contains(key);
    row.expandable = true;
    rows.push_back(row);
    return row.expanded;
}

void SidebarRows::addQuick(Rows &rows) const
{
    if (!addHead(rows, QStringLiteral("quickAccess"), QStringLiteral("Schnellzugriff")))
        return;
    for (const QuickEntry &entry : m_sources.pins.entries.get())
        rows.push_back(quickRow(entry));
}

void SidebarRows::addFolders(Rows &rows) const
{
    if (!addHead(rows, QStringLiteral("folders"), QStringLiteral("Ordner")))
        return;
    Location root;
    for (const FolderTreeRow &folder : m_sources.tree.rows.get()) {
        if (folder.depth == 0)
            root = folder.location;
        SidebarRow row;
        row.kind = SidebarRow::Kind::Folder;
        // One folder may appear below two roots, so the key contains the root.
        row.key = keyOf(QStringLiteral("folder:"), root) + keyOf(QStringLiteral(":"), folder.location);
        row.title = folder.name;
        row.choice = SidebarItem::tree(root, folder.location);
        row.toolTip = shown(folder.location);
        row.colorName = m_sources.colors.color(folder.location);
        row.color = colorOf(row.colorName);
        row.depth = folder.depth;
        row.expandable = folder.expandable;
        row.expanded = folder.expanded;
        row.loading = folder.loading;
        rows.push_back(std::move(row));
    }
}

void SidebarRows::addDevices(Rows &rows) const
{
    if (!addHead(rows, QStringLiteral("devices"), QStringLiteral("Geräte")))
        return;
    for (const VolumeEntry &volume : m_sources.volumes.volumes.get()) {
        rows.push_back(volumeRow(volume));
        if (m_ejecting.contains(volume.root)) {
            rows.back().note = QStringLiteral("auswerfen …");
            rows.back().toolTip = QStringLiteral("Wird ausgeworfen. Warte, bis der Datenträger hier nicht mehr steht.");
            rows.back().ejectable = false;
        }
    }
    rows.push_back(placeRow(QStringLiteral("Netzwerk"), QStringLiteral("network"), SidebarItem::network(),
                            QStringLiteral("Mit Servern verbinden")));
}

void SidebarRows::addTags(Rows &rows) const
{
    if (!addHead(rows, QStringLiteral("tags"), QStringLiteral("Markierungen")))
        return;
    for (const FileTags::PaletteTag &tag : FileTags::all) {
        const QString name = tag.name.toString();
        rows.push_back(
            placeRow(name, {}, SidebarItem::tag(name), QStringLiteral("Alles mit der Markierung „%1“").arg(name)));
        rows.back().color = QColor::fromRgb(tag.color);
    }
}

/// With the Trash above them.
void SidebarRows::addAssistants(Rows &rows) const
{
    SidebarRow gap;
    gap.kind = SidebarRow::Kind::Gap;
    gap.key = QStringLiteral("gap");
    rows.push_back(gap);
    rows.push_back(placeRow(QStringLiteral("Papierkorb"), QStringLiteral("trash"),
                            SidebarItem::place(m_sources.folders.trash),
                            QStringLiteral("Was im Papierkorb liegt, von allen Laufwerken")));
    if (!addHead(rows, QStringLiteral("assistants"), QStringLiteral("Assistenten")))
        return;
    rows.push_back(
        placeRow(QStringLiteral("Aufräum-Agent"), QStringLiteral("wand.and.sparkles"), SidebarItem::agent()));
    rows.back().badge = m_agentBadge;
}

/// Replaces the rows and moves persistent indexes with them.
void SidebarRows::follow(Rows next)
{
    if (next != m_rows) {
        Q_EMIT layoutAboutToBeChanged();
        const QModelIndexList before = persistentIndexList();
        QStringList keys;
        for (const QModelIndex &index : before)
            keys << row(index).key;
        m_rows = std::move(next);
        QModelIndexList after;
        for (const QString &key : keys)
            after << indexOf(key);
        changePersistentIndexList(before, after);
        Q_EMIT layoutChanged();
    }
    findCurrent();
}

QModelIndex SidebarRows::indexOf(const QString &key) const
{
    const auto found = std::ranges::find(m_rows, key, &SidebarRow::key);
    return key.isEmpty() || found == m_rows.end() ? QModelIndex()
                                                  : createIndex(static_cast<int>(found - m_rows.begin()), 0);
}

void SidebarRows::setCurrent(const Place &place)
{
    m_current = place;
    findCurrent();
}

void SidebarRows::setChosen(const QString &key)
{
    m_chosenKey = key;
    findCurrent();
}

/// The row clicked last, otherwise the first one outside the tree, otherwise one in the tree.
void SidebarRows::findCurrent()
{
    QString found;
    int best = 0;
    for (const SidebarRow &one : m_rows) {
        if (!m_current || !one.choice || placeOf(*one.choice, m_sources.folders) != *m_current)
            continue;
        const int rank = one.key == m_chosenKey ? 3 : one.kind == SidebarRow::Kind::Folder ? 1 : 2;
        if (rank > best) {
            best = rank;
            found = one.key;
        }
    }
    if (std::exchange(m_currentKey, found) == found || m_rows.empty())
        return;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT currentMoved();
}

bool SidebarRows::isCurrent(const QModelIndex &index) const
{
    return !m_currentKey.isEmpty() && row(index).key == m_currentKey;
}

void SidebarRows::setAgentBadge(int number)
{
    m_agentBadge = number;
    rebuild();
}

void SidebarRows::setEjecting(const Location &volume, bool ejecting)
{
    if (ejecting)
        m_ejecting.insert(volume);
    else
        m_ejecting.erase(volume);
    rebuild();
}

void SidebarRows::setFolded(const QString &section, bool folded)
{
    if (const Result<void> stored = m_sources.folded.setFolded(section, folded); !stored)
        Q_EMIT failed(QStringLiteral("Was aufgeklappt ist, konnte nicht gespeichert werden: ") +
                      stored.error().message);
}

int SidebarRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SidebarRows::data(const QModelIndex &index, int role) const
{
    const SidebarRow &one = row(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return one.title;
    case Qt::ToolTipRole:
        return one.toolTip;
    case Qt::AccessibleTextRole:
        return accessibleText(one);
    case Key:
        return one.key;
    default:
        return {};
    }
}

bool SidebarRows::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    const Result<void> renamed = m_sources.pins.rename(row(index).entry, value.toString());
    if (!renamed)
        Q_EMIT failed(QStringLiteral("„%1“ wurde nicht umbenannt: %2").arg(row(index).title, renamed.error().message));
    return renamed.has_value();
}

Qt::ItemFlags SidebarRows::flags(const QModelIndex &index) const
{
    const SidebarRow &one = row(index);
    if (one.kind == SidebarRow::Kind::Gap)
        return Qt::NoItemFlags;
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return one.kind == SidebarRow::Kind::Quick ? usual | Qt::ItemIsEditable | Qt::ItemIsDragEnabled : usual;
}

} // namespace brellin

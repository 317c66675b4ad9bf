#include "FolderChooser/Screens/ChooserPlaces.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"
#include "Places/KnownFolders.h"
#include "Places/VolumeList.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/VolumeTexts.h"

#include <QKeyEvent>

namespace brellin {

namespace {

constexpr int folderRole = Qt::UserRole;

Location folderOf(const QListWidgetItem &item)
{
    return locationFromText(item.data(folderRole).toString());
}

} // namespace

ChooserPlaces::ChooserPlaces(Pins &pins, VolumeList &volumes, const KnownFolders &folders, QWidget *parent)
    : QListWidget(parent)
    , m_pins(pins)
    , m_volumes(volumes)
    , m_folders(folders)
{
    setObjectName(QStringLiteral("chooserPlaces"));
    setAccessibleName(QStringLiteral("Orte"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    connect(this, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { Q_EMIT chosen(folderOf(*item)); });
    pins.entries.observe(this, [this](const auto &) { rebuild(); });
    volumes.volumes.observe(this, [this](const auto &) { rebuild(); });
    rebuild();
}

void ChooserPlaces::rebuild()
{
    clear();
    add(QStringLiteral("Benutzerordner"), QStringLiteral("house"), m_folders.home);
    for (const QuickEntry &entry : m_pins.entries.get())
        if (entry.path && *entry.path != m_folders.home)
            add(entry.name, entry.symbol, *entry.path);
    for (const VolumeEntry &volume : m_volumes.volumes.get())
        add(volume.name, volumeSymbol(volume), volume.root);
    setCurrent(m_current);
}

void ChooserPlaces::add(const QString &title, const QString &symbol, const Location &folder)
{
    auto *const item = new QListWidgetItem(Symbols::icon(symbol), title, this);
    item->setData(folderRole, textOf(folder));
    item->setToolTip(shown(folder));
    item->setSizeHint({0, scaled(28)});
}

void ChooserPlaces::setCurrent(const Location &folder)
{
    m_current = folder;
    setCurrentRow(-1);
    for (int row = 0; row < count(); ++row)
        if (folderOf(*item(row)) == folder) {
            setCurrentRow(row);
            return;
        }
}

void ChooserPlaces::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && event->modifiers() == Qt::NoModifier && currentItem())
        Q_EMIT chosen(folderOf(*currentItem()));
    else
        QListWidget::keyPressEvent(event);
}

} // namespace brellin

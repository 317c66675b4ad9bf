#include "Sidebar/Screens/SidebarView.h"

#include "Features/FolderColors.h"
#include "Look/Theme.h"
#include "Places/VolumeList.h"
#include "Sidebar/FolderTree.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/EntryImages.h"
#include "Sidebar/Screens/SidebarList.h"
#include "Sidebar/Screens/SidebarMenus.h"
#include "Sidebar/Screens/SymbolChoice.h"

#include <QFileDialog>
#include <QMenu>
#include <QMetaMethod>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace brellin {

using Kind = SidebarRow::Kind;

struct SidebarView::Private {
    Private(SidebarView &view, SidebarSources given)
        : q(view)
        , sources(given)
        , rows(new SidebarRows(given, &view))
        , images(new EntryImages(given.images, &view))
        , lines(new SidebarDelegate(*rows, *images, &view))
        , list(new SidebarList(*rows, *lines, &view))
    {
    }

    void connectAll();
    void choose(const QModelIndex &index, SidebarList::Where where);
    void toggle(const QModelIndex &index);
    void eject(SidebarRow row);
    void report(const Result<void> &done, const QString &what);
    void showMenu(const QModelIndex &index, const QPoint &screenPlace);
    SidebarActions actionsFor(const QModelIndex &index);
    void addQuickActions(SidebarActions &actions, const SidebarRow &row, const QPersistentModelIndex &index);
    void addFolderActions(SidebarActions &actions, const SidebarRow &row);
    void chooseSymbol(const SidebarRow &row, const QModelIndex &index);
    void chooseImage(const SidebarRow &row);
    bool leadsElsewhere(const Location &folder) const;
    std::optional<Location> folderOf(const SidebarRow &row) const;

    SidebarView &q;
    SidebarSources sources;
    SidebarRows *rows;
    EntryImages *images;
    SidebarDelegate *lines;
    SidebarList *list;
};

SidebarView::SidebarView(SidebarSources sources, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, sources))
{
    setObjectName(QStringLiteral("sidebar"));
    setAccessibleName(QStringLiteral("Seitenleiste"));
    setFocusProxy(d->list);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, scaled(1), 1, 0);
    column->addWidget(d->list);
    d->connectAll();
}

SidebarView::~SidebarView() = default;

QSize SidebarView::sizeHint() const
{
    return {scaled(216), scaled(600)};
}

QSize SidebarView::minimumSizeHint() const
{
    return {scaled(140), scaled(120)};
}

void SidebarView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Sidebar));
    painter.fillRect(QRect(width() - 1, 0, 1, height()), color(Token::Line));
}

void SidebarView::setCurrent(const Place &place)
{
    const bool ofFolder = place.kind == Place::Kind::Search || place.kind == Place::Kind::Storage;
    const Place shown = ofFolder ? placeOf(place.location, d->sources.folders) : place;
    d->rows->setCurrent(shown);
    if (shown.kind != Place::Kind::Folder)
        return;
    if (d->leadsElsewhere(shown.location))
        d->sources.tree.leave(shown.location);
    else
        d->sources.tree.reveal(shown.location);
}

void SidebarView::setAgentBadge(int number)
{
    d->rows->setAgentBadge(number);
}

QWidget *SidebarView::dropArea() const
{
    return d->list->viewport();
}

std::optional<Location> SidebarView::folderAt(QPoint place) const
{
    const QModelIndex index = d->list->indexAt(place);
    if (!index.isValid())
        return std::nullopt;
    return d->folderOf(d->rows->row(index));
}

void SidebarView::focusList()
{
    d->list->setFocus(Qt::ShortcutFocusReason);
}

/// Whether a row outside the tree leads to the folder; the tree is not expanded then.
bool SidebarView::Private::leadsElsewhere(const Location &folder) const
{
    return sources.pins.holds(folder) || std::ranges::find(sources.volumes.volumes.get(), folder, &VolumeEntry::root) !=
                                             sources.volumes.volumes.get().end();
}

/// The folder for drops and properties; none for other places, including the Trash.
std::optional<Location> SidebarView::Private::folderOf(const SidebarRow &row) const
{
    const bool leadsToFolder = row.choice && placeOf(*row.choice, sources.folders).kind == Place::Kind::Folder;
    return leadsToFolder ? std::optional(row.choice->location) : std::nullopt;
}

void SidebarView::Private::connectAll()
{
    connect(list, &SidebarList::chosen, &q,
            [this](const QModelIndex &index, SidebarList::Where where) { choose(index, where); });
    connect(list, &SidebarList::toggled, &q, [this](const QModelIndex &index) { toggle(index); });
    connect(list, &SidebarList::ejectWanted, &q, [this](const QModelIndex &index) { eject(rows->row(index)); });
    connect(list, &SidebarList::removeWanted, &q, [this](const QModelIndex &index) {
        report(sources.pins.remove(rows->row(index).entry), QStringLiteral("Der Schnellzugriff wurde nicht geändert"));
    });
    connect(list, &SidebarList::menuWanted, &q,
            [this](const QModelIndex &index, const QPoint &place) { showMenu(index, place); });
    connect(list, &SidebarList::moveWanted, &q, [this](const QUuid &entry, int place) {
        report(sources.pins.moveTo(entry, static_cast<std::size_t>(place)),
               QStringLiteral("Der Schnellzugriff wurde nicht geändert"));
    });
    connect(rows, &SidebarRows::currentMoved, list, [this] {
        if (rows->current().isValid())
            list->scrollTo(rows->current());
    });
    connect(rows, &SidebarRows::failed, &q, &SidebarView::failed);
    connect(images, &EntryImages::changed, list->viewport(), qOverload<>(&QWidget::update));
}

void SidebarView::Private::choose(const QModelIndex &index, SidebarList::Where where)
{
    const SidebarRow row = rows->row(index);
    if (!row.choice)
        return;
    if (where == SidebarList::Where::NewTab) {
        Q_EMIT q.chosenForNewTab(*row.choice);
        return;
    }
    rows->setChosen(row.key);
    Q_EMIT q.chosen(*row.choice);
}

void SidebarView::Private::toggle(const QModelIndex &index)
{
    const SidebarRow row = rows->row(index);
    const QString notKept = QStringLiteral("Was aufgeklappt ist, konnte nicht gespeichert werden");
    if (row.kind == Kind::Section)
        rows->setFolded(row.key, row.expanded);
    else if (row.kind == Kind::Folder && row.expanded)
        report(sources.tree.collapse(row.choice->location), notKept);
    else if (row.kind == Kind::Folder)
        report(sources.tree.expand(row.choice->location), notKept);
}

/// By value, since setEjecting() rebuilds the rows.
void SidebarView::Private::eject(SidebarRow row)
{
    if (!row.choice)
        return;
    const Location volume = row.choice->location;
    rows->setEjecting(volume, true);
    sources.volumes.eject(volume, &q, [this, volume, title = std::move(row.title)](const Result<void> &done) {
        rows->setEjecting(volume, false);
        report(done, QStringLiteral("„%1“ wurde nicht ausgeworfen").arg(title));
    });
}

void SidebarView::Private::report(const Result<void> &done, const QString &what)
{
    if (!done)
        Q_EMIT q.failed(QStringLiteral("%1: %2").arg(what, done.error().message));
}

void SidebarView::Private::showMenu(const QModelIndex &index, const QPoint &screenPlace)
{
    list->setCurrentIndex(index);
    if (QMenu *const menu = makeSidebarMenu(rows->row(index), actionsFor(index), &q))
        menu->popup(screenPlace);
}

/// Actions hold persistent indexes, since rows may change while the menu is open.
SidebarActions SidebarView::Private::actionsFor(const QModelIndex &index)
{
    const SidebarRow row = rows->row(index);
    const QPersistentModelIndex line(index);
    SidebarActions actions;
    if (row.kind == Kind::Section)
        actions.toggleFold = [this, line] {
            if (line.isValid())
                toggle(line);
        };
    if (row.choice) {
        actions.open = [this, line] {
            if (line.isValid())
                choose(line, SidebarList::Where::Here);
        };
        actions.openInNewTab = [this, choice = *row.choice] { Q_EMIT q.chosenForNewTab(choice); };
    }
    if (row.kind == Kind::Quick)
        addQuickActions(actions, row, line);
    if (folderOf(row))
        addFolderActions(actions, row);
    return actions;
}

void SidebarView::Private::addQuickActions(SidebarActions &actions, const SidebarRow &row,
                                           const QPersistentModelIndex &index)
{
    const QString unchanged = QStringLiteral("„%1“ wurde nicht geändert").arg(row.title);
    const auto edit = [this, unchanged](auto change) {
        return [this, unchanged, change] { report(change(sources.pins), unchanged); };
    };
    const QUuid entry = row.entry;
    actions.rename = [this, index] {
        if (index.isValid())
            list->rename(index);
    };
    actions.moveUp = edit([entry](Pins &pins) { return pins.moveUp(entry); });
    actions.moveDown = edit([entry](Pins &pins) { return pins.moveDown(entry); });
    actions.unpin = edit([entry](Pins &pins) { return pins.remove(entry); });
    actions.chooseSymbol = [this, row, index] { chooseSymbol(row, index); };
    if (sources.images)
        actions.chooseImage = [this, row] { chooseImage(row); };
    if (row.image)
        actions.removeImage = edit([entry](Pins &pins) { return pins.setImage(entry, std::nullopt); });
    actions.setColor = [this, entry, unchanged](const std::optional<QString> &name) {
        report(sources.pins.setColor(entry, name), unchanged);
    };
}

void SidebarView::Private::addFolderActions(SidebarActions &actions, const SidebarRow &row)
{
    const Location folder = row.choice->location;
    if (row.kind == Kind::Folder) {
        if (!sources.pins.holds(folder))
            actions.pin = [this, folder] {
                report(sources.pins.toggle(folder), QStringLiteral("Der Ordner wurde nicht angeheftet"));
            };
        if (row.depth > 0)
            actions.setColor = [this, folder](const std::optional<QString> &name) {
                sources.colors.setColor(folder, name);
            };
    }
    if (row.ejectable)
        actions.eject = [this, row] { eject(row); };
    if (q.isSignalConnected(QMetaMethod::fromSignal(&SidebarView::propertiesWanted)))
        actions.properties = [this, folder] { Q_EMIT q.propertiesWanted(folder); };
}

/// Setting a symbol also removes the picture that would hide it.
void SidebarView::Private::chooseSymbol(const SidebarRow &row, const QModelIndex &index)
{
    auto *const choice = new SymbolChoice(row.symbol, &q);
    connect(choice, &SymbolChoice::chosen, &q, [this, row](const QString &symbol) {
        const QString unchanged = QStringLiteral("„%1“ wurde nicht geändert").arg(row.title);
        report(sources.pins.setSymbol(row.entry, symbol), unchanged);
        if (row.image)
            report(sources.pins.setImage(row.entry, std::nullopt), unchanged);
    });
    const QRect line = list->visualRect(index);
    choice->openAt(QRect(list->viewport()->mapToGlobal(line.topLeft()), line.size()));
}

void SidebarView::Private::chooseImage(const SidebarRow &row)
{
    auto *const dialog = new QFileDialog(q.window(), QStringLiteral("Bild für „%1“ wählen").arg(row.title));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(QStringLiteral("Bilder (*.png *.jpg *.jpeg *.gif *.webp *.heic *.tif *.tiff *.bmp)"));
    connect(dialog, &QFileDialog::fileSelected, &q, [this, row](const QString &file) {
        report(sources.pins.setImage(row.entry, Location(QFile::encodeName(file).toStdString())),
               QStringLiteral("„%1“ wurde nicht geändert").arg(row.title));
    });
    dialog->open();
}

} // namespace brellin

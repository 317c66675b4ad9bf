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

namespace {

/// Share of the height that the lower half may take from the upper one.
constexpr double mostForMarks = 0.6;

/// One of the two lists.
struct Half {
    SidebarRows *rows;
    SidebarDelegate *lines;
    SidebarList *list;

    Half(const SidebarSources &sources, SidebarRows::Half which, EntryImages &images, SidebarView &view)
        : rows(new SidebarRows(sources, which, &view))
        , lines(new SidebarDelegate(*rows, images, &view))
        , list(new SidebarList(*rows, *lines, &view))
    {
        list->setMinimumHeight(0);
        list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
};

const SidebarRow &rowAt(const QModelIndex &index)
{
    return static_cast<const SidebarRows *>(index.model())->row(index);
}

} // namespace

struct SidebarView::Private {
    Private(SidebarView &view, SidebarSources given)
        : q(view)
        , sources(given)
        , images(new EntryImages(given.images, &view))
        , places(given, SidebarRows::Half::Places, *images, view)
        , marks(given, SidebarRows::Half::Marks, *images, view)
    {
        places.list->setObjectName(QStringLiteral("sidebarList"));
        marks.list->setObjectName(QStringLiteral("sidebarMarks"));
    }

    void connectAll();
    void connectHalf(const Half &half);
    void fit();
    void pass(int key);
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
    EntryImages *images;
    Half places;
    Half marks;
};

SidebarView::SidebarView(SidebarSources sources, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, sources))
{
    setObjectName(QStringLiteral("sidebar"));
    setAccessibleName(QStringLiteral("Seitenleiste"));
    setFocusProxy(d->places.list);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, scaled(1), 1, 0);
    column->setSpacing(0);
    column->addWidget(d->places.list, 1);
    column->addWidget(d->marks.list);
    column->addStretch(0);
    d->connectAll();
    d->fit();
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
    if (d->places.list->height() < d->places.list->contentHeight())
        painter.fillRect(QRect(0, d->marks.list->y() - 1, width(), 1), color(Token::Line));
}

void SidebarView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->fit();
}

/// The lower half is shown whole, unless the upper one would lose too much.
void SidebarView::Private::fit()
{
    const int whole = marks.list->contentHeight();
    const int upper = places.list->contentHeight();
    const int most = std::max(static_cast<int>(q.height() * mostForMarks), q.height() - upper - scaled(4));
    marks.list->setFixedHeight(std::min(whole, most));
    // One more for the line that shows that the list goes on.
    places.list->setMaximumHeight(upper);
    q.layout()->setSpacing(upper + whole > q.height() ? 1 : 0);
    q.update();
}

void SidebarView::setCurrent(const Place &place)
{
    const bool ofFolder = place.kind == Place::Kind::Search || place.kind == Place::Kind::Storage;
    const Place shown = ofFolder ? placeOf(place.location, d->sources.folders) : place;
    d->places.rows->setCurrent(shown);
    d->marks.rows->setCurrent(shown);
    if (shown.kind != Place::Kind::Folder)
        return;
    if (d->leadsElsewhere(shown.location))
        d->sources.tree.leave(shown.location);
    else
        d->sources.tree.reveal(shown.location);
}

void SidebarView::setAgentBadge(int number)
{
    d->marks.rows->setAgentBadge(number);
}

QWidget *SidebarView::dropArea() const
{
    return d->places.list->viewport();
}

std::optional<Location> SidebarView::folderAt(QPoint place) const
{
    const QModelIndex index = d->places.list->indexAt(place);
    return index.isValid() ? d->folderOf(rowAt(index)) : std::nullopt;
}

void SidebarView::showDropAt(std::optional<QPoint> place)
{
    d->places.lines->setDropRow(place ? d->places.list->indexAt(*place) : QModelIndex());
    d->places.list->viewport()->update();
}

void SidebarView::focusList()
{
    d->places.list->setFocus(Qt::ShortcutFocusReason);
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
    connectHalf(places);
    connectHalf(marks);
    SidebarList *const quick = places.list;
    quick->setAcceptDrops(true);
    quick->viewport()->setAcceptDrops(true);
    connect(quick, &SidebarList::ejectWanted, &q, [this](const QModelIndex &index) { eject(rowAt(index)); });
    connect(quick, &SidebarList::removeWanted, &q, [this](const QModelIndex &index) {
        report(sources.pins.remove(rowAt(index).entry), QStringLiteral("Der Schnellzugriff wurde nicht geändert"));
    });
    connect(quick, &SidebarList::moveWanted, &q, [this](const QUuid &entry, int place) {
        report(sources.pins.moveTo(entry, static_cast<std::size_t>(place)),
               QStringLiteral("Der Schnellzugriff wurde nicht geändert"));
    });
    connect(images, &EntryImages::changed, quick->viewport(), qOverload<>(&QWidget::update));
    connect(&Theme::shared(), &Theme::changed, &q, [this] { fit(); });
}

void SidebarView::Private::connectHalf(const Half &half)
{
    connect(half.list, &SidebarList::chosen, &q,
            [this](const QModelIndex &index, SidebarList::Where where) { choose(index, where); });
    connect(half.list, &SidebarList::toggled, &q, [this](const QModelIndex &index) { toggle(index); });
    connect(half.list, &SidebarList::menuWanted, &q,
            [this](const QModelIndex &index, const QPoint &place) { showMenu(index, place); });
    connect(half.list, &SidebarList::passed, &q, [this](int key) { pass(key); });
    connect(half.rows, &SidebarRows::layoutChanged, &q, [this] { fit(); });
    connect(half.rows, &SidebarRows::currentMoved, half.list, [half] {
        if (half.rows->current().isValid())
            half.list->scrollTo(half.rows->current());
    });
    connect(half.rows, &SidebarRows::failed, &q, &SidebarView::failed);
}

/// The halves are one list for the keyboard.
void SidebarView::Private::pass(int key)
{
    if (key == Qt::Key_Down || key == Qt::Key_End)
        marks.list->focusEnd(key == Qt::Key_End);
    else
        places.list->focusEnd(key == Qt::Key_Up);
}

void SidebarView::Private::choose(const QModelIndex &index, SidebarList::Where where)
{
    const SidebarRow row = rowAt(index);
    if (!row.choice)
        return;
    if (where == SidebarList::Where::NewTab) {
        Q_EMIT q.chosenForNewTab(*row.choice);
        return;
    }
    places.rows->setChosen(row.key);
    marks.rows->setChosen(row.key);
    Q_EMIT q.chosen(*row.choice);
}

void SidebarView::Private::toggle(const QModelIndex &index)
{
    const SidebarRow row = rowAt(index);
    const QString notKept = QStringLiteral("Was aufgeklappt ist, konnte nicht gespeichert werden");
    if (row.kind == Kind::Section)
        places.rows->setFolded(row.key, row.expanded);
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
    places.rows->setEjecting(volume, true);
    sources.volumes.eject(volume, &q, [this, volume, title = std::move(row.title)](const Result<void> &done) {
        places.rows->setEjecting(volume, false);
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
    (index.model() == places.rows ? places : marks).list->setCurrentIndex(index);
    if (QMenu *const menu = makeSidebarMenu(rowAt(index), actionsFor(index), &q))
        menu->popup(screenPlace);
}

/// Actions hold persistent indexes, since rows may change while the menu is open.
SidebarActions SidebarView::Private::actionsFor(const QModelIndex &index)
{
    const SidebarRow row = rowAt(index);
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
            places.list->rename(index);
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
    const QRect line = places.list->visualRect(index);
    choice->openAt(QRect(places.list->viewport()->mapToGlobal(line.topLeft()), line.size()));
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

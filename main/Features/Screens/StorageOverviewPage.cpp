#include "Features/Screens/StorageOverviewPage.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Features/Screens/StorageRowDelegate.h"
#include "Features/Screens/StorageRows.h"
#include "Features/Screens/StorageTreemap.h"
#include "Look/BusyBar.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QStackedLayout>

namespace brellin {

namespace {

constexpr int cardWidth = 286;

/// „Downloads › Urlaub › Meran“
QString trail(const Location &top, const Location &shownFolder)
{
    QString text = shownName(top);
    if (shownFolder != top)
        for (const Location &part : shownFolder.lexically_relative(top))
            text += u" › "_qs + shownName(part);
    return text;
}

QString spaceText(const VolumeSpace &space)
{
    return QStringLiteral("%1 von %2 frei. ").arg(sizeText(space.free), sizeText(space.capacity));
}

} // namespace

struct StorageOverviewPage::Private {
    Private(StorageOverviewPage &page, StorageOverview &counted, VolumeList::AskSpace ask)
        : q(page)
        , overview(counted)
        , askSpace(std::move(ask))
        , rows(counted, &page)
        , spacePool(abandonablePool())
    {
    }

    void build();
    QLayout *buildHead();
    QLayout *buildMiddle();
    QWidget *buildCard();
    void buildList(QWidget *parent);
    void connectAll();

    const StorageEntry *current() const { return rows.entry(list->currentIndex()); }
    void choose(int row) { list->setCurrentIndex(rows.index(row)); }
    void enter(const QModelIndex &index);
    void up();
    void open();
    void trash();
    void showMenu(QPoint place);
    void followEntries();
    void followFolder(const Location &folder);
    void refreshHead();
    void refreshButtons();
    void refreshEmpty();
    void askForSpace();

    StorageOverviewPage &q;
    StorageOverview &overview;
    const VolumeList::AskSpace askSpace;
    StorageRows rows;
    Location before;     ///< the folder shown before
    bool arrived = true; ///< waiting for the entries of another folder
    std::shared_ptr<QThreadPool> spacePool;
    Job<Result<VolumeSpace>> spaceJob;
    bool spaceOutdated = false; ///< requested again while waiting for an answer
    SymbolButton *back = nullptr;
    ElidedLabel *subtitle = nullptr;
    SymbolButton *again = nullptr;
    QPushButton *stop = nullptr;
    QProgressBar *progress = nullptr;
    StorageTreemap *tiles = nullptr;
    EmptyState *empty = nullptr;
    QStackedLayout *stack = nullptr;
    QListView *list = nullptr;
    TextLabel *space = nullptr;
    TextLabel *status = nullptr;
    QPushButton *openButton = nullptr;
    QPushButton *trashButton = nullptr;
};

StorageOverviewPage::StorageOverviewPage(StorageOverview &overview, QWidget *parent, VolumeList::AskSpace askSpace)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, overview, std::move(askSpace)))
{
    setObjectName(QStringLiteral("storagePage"));
    setAccessibleName(QStringLiteral("Speicherplatz"));
    d->build();
    d->connectAll();
    d->followEntries();
    d->refreshHead();
    d->askForSpace();
    setFocusProxy(d->tiles);
}

StorageOverviewPage::~StorageOverviewPage() = default;

void StorageOverviewPage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
}

void StorageOverviewPage::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier)
        d->up();
    else if (event->key() == Qt::Key_Delete)
        d->trash();
    else if (enter && event->modifiers() == Qt::ControlModifier)
        d->open();
    else
        QWidget::keyPressEvent(event);
}

void StorageOverviewPage::Private::build()
{
    auto *const column = new QVBoxLayout(&q);
    column->setContentsMargins(scaled(30), scaled(18), scaled(16), scaled(12));
    column->setSpacing(scaled(6));
    column->addLayout(buildHead());
    // Keeps its space when hidden, so that the tiles do not jump.
    progress = makeBusyBar(QStringLiteral("Der Ordner wird gezählt"), QStringLiteral("storageProgress"),
                           WhenHidden::KeepsRoom, &q);
    column->addWidget(progress);
    column->addLayout(buildMiddle(), 1);
}

QLayout *StorageOverviewPage::Private::buildHead()
{
    auto *const head = new QHBoxLayout;
    head->setContentsMargins(0, 0, scaled(14), 0);
    head->setSpacing(scaled(10));
    back =
        new SymbolButton(QStringLiteral("chevron-left"), QStringLiteral("Zurück"), QStringLiteral("storageBack"), &q);
    head->addWidget(back);
    head->addWidget(makeTitle(QStringLiteral("Speicherplatz"), &q));
    subtitle = new ElidedLabel({}, Token::Secondary, 1, &q);
    subtitle->setObjectName(QStringLiteral("storageSubtitle"));
    subtitle->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    head->addWidget(subtitle, 1);
    stop = makeButton(QStringLiteral("Anhalten"), ButtonKind::Usual, QStringLiteral("storageStop"), &q);
    stop->setToolTip(QStringLiteral("Hört auf zu zählen; was gezählt ist, bleibt"));
    again = new SymbolButton(QStringLiteral("refresh-cw"), QStringLiteral("Neu zählen"), QStringLiteral("storageAgain"),
                             &q);
    head->addWidget(stop);
    head->addWidget(again);
    return head;
}

QLayout *StorageOverviewPage::Private::buildMiddle()
{
    tiles = new StorageTreemap(&q);
    empty = new EmptyState(QStringLiteral("chart-pie"), {}, {}, &q);
    empty->setObjectName(QStringLiteral("storageEmpty"));
    auto *const left = new QWidget(&q);
    stack = new QStackedLayout(left);
    stack->addWidget(tiles);
    stack->addWidget(empty);
    auto *const leftColumn = new QVBoxLayout;
    // The card's shadow extends beyond the tiles.
    leftColumn->setContentsMargins(0, shadowReach(), 0, shadowReach());
    leftColumn->addWidget(left);
    auto *const middle = new QHBoxLayout;
    middle->setSpacing(scaled(8));
    middle->addLayout(leftColumn, 1);
    middle->addWidget(buildCard());
    return middle;
}

QWidget *StorageOverviewPage::Private::buildCard()
{
    auto *const card = new Card(&q);
    card->setFixedWidth(scaled(cardWidth) + 2 * shadowReach());
    QVBoxLayout &column = *card->content();
    const int margin = shadowReach() + scaled(8);
    column.setContentsMargins(margin, margin, margin, margin + scaled(4));
    column.setSpacing(scaled(8));
    buildList(card);
    column.addWidget(list, 1);
    column.addWidget(new Separator(Qt::Horizontal, card));
    auto *const texts = new QVBoxLayout;
    texts->setContentsMargins(scaled(10), 0, scaled(10), 0);
    texts->setSpacing(scaled(6));
    space = makeSecondary({}, card);
    space->setObjectName(QStringLiteral("storageSpace"));
    status = makeSecondary({}, card);
    status->setObjectName(QStringLiteral("storageStatus"));
    texts->addWidget(space);
    texts->addWidget(status);
    column.addLayout(texts);
    openButton = makeButton(QStringLiteral("Öffnen"), ButtonKind::Usual, QStringLiteral("storageOpen"), card,
                            QStringLiteral("folder-open"));
    trashButton = makeButton(QStringLiteral("In den Papierkorb legen"), ButtonKind::Danger,
                             QStringLiteral("storageTrash"), card, QStringLiteral("trash"));
    column.addWidget(openButton);
    column.addWidget(trashButton);
    return card;
}

void StorageOverviewPage::Private::buildList(QWidget *parent)
{
    list = new QListView(parent);
    list->setObjectName(QStringLiteral("storageList"));
    list->setAccessibleName(QStringLiteral("Belegung als Liste"));
    list->setModel(&rows);
    list->setItemDelegate(new StorageRowDelegate(list));
    list->setUniformItemSizes(true);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setMouseTracking(true);
    list->setFrameShape(QFrame::NoFrame);
    list->viewport()->setAutoFillBackground(false);
    list->setMinimumHeight(scaled(70));
}

void StorageOverviewPage::Private::connectAll()
{
    connect(back, &QToolButton::clicked, &q, [this] { up(); });
    connect(stop, &QPushButton::clicked, &q, [this] { overview.cancel(); });
    connect(again, &QToolButton::clicked, &q, [this] { overview.count(overview.top.get()); });
    connect(openButton, &QPushButton::clicked, &q, [this] { open(); });
    connect(trashButton, &QPushButton::clicked, &q, [this] { trash(); });
    connect(tiles, &StorageTreemap::chosen, &q, [this](int row) { choose(row); });
    connect(tiles, &StorageTreemap::entered, &q, [this](int row) { enter(rows.index(row)); });
    connect(tiles, &StorageTreemap::menuWanted, &q, [this](int, QPoint place) { showMenu(place); });
    connect(list, &QListView::activated, &q, [this](const QModelIndex &index) { enter(index); });
    connect(list, &QWidget::customContextMenuRequested, &q,
            [this](QPoint place) { showMenu(list->viewport()->mapToGlobal(place)); });
    connect(list->selectionModel(), &QItemSelectionModel::currentChanged, &q, [this](const QModelIndex &index) {
        tiles->setCurrent(index.isValid() ? index.row() : -1);
        refreshButtons();
    });
    overview.top.observe(&q, [this](const Location &) { askForSpace(); });
    overview.shown.observe(&q, [this](const Location &folder) { followFolder(folder); });
    overview.entries.observe(&q, [this](const auto &) { followEntries(); });
    overview.bytes.observe(&q, [this](std::int64_t) { refreshHead(); });
    overview.files.observe(&q, [this](std::int64_t) { refreshHead(); });
    overview.status.observe(&q, [this](const QString &) { refreshHead(); });
    overview.errorMessage.observe(&q, [this](const auto &) { refreshEmpty(); });
    overview.counting.observe(&q, [this](bool counting) {
        refreshHead();
        refreshEmpty();
        if (!counting)
            askForSpace();
    });
}

/// Opens a folder in the overview; shows anything else in a pane.
void StorageOverviewPage::Private::enter(const QModelIndex &index)
{
    const StorageEntry *const entry = rows.entry(index);
    if (!entry)
        return;
    if (entry->kind == StorageEntry::Kind::Folder)
        overview.goDown(Location(entry->location));
    else
        Q_EMIT q.openWanted(entry->location);
}

void StorageOverviewPage::Private::up()
{
    if (overview.canGoUp())
        overview.goUp();
    else
        Q_EMIT q.leaveWanted();
}

void StorageOverviewPage::Private::open()
{
    Q_EMIT q.openWanted(current() ? current()->location : overview.shown.get());
}

void StorageOverviewPage::Private::trash()
{
    if (trashButton->isEnabled() && current())
        Q_EMIT q.trashWanted({current()->location});
}

void StorageOverviewPage::Private::showMenu(QPoint place)
{
    const StorageEntry *const entry = current();
    if (!entry)
        return;
    auto *const menu = new QMenu(&q);
    menu->setObjectName(QStringLiteral("storageMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (entry->kind == StorageEntry::Kind::Folder)
        menu->addAction(Symbols::icon(QStringLiteral("zoom-in")), QStringLiteral("Inhalt ansehen"), &q,
                        [this] { enter(list->currentIndex()); });
    menu->addAction(Symbols::icon(QStringLiteral("folder-open")), openButton->text(), &q, [this] { open(); });
    menu->addSeparator();
    menu->addAction(Symbols::icon(QStringLiteral("trash"), Token::Danger), trashButton->text(), &q, [this] { trash(); })
        ->setEnabled(trashButton->isEnabled());
    menu->popup(place);
}

void StorageOverviewPage::Private::followFolder(const Location &folder)
{
    // After going up, make the folder one came from current; after going down, the largest entry.
    before = isAtOrBelow(before, folder) ? before : Location();
    arrived = true;
    list->clearSelection();
    list->setCurrentIndex({});
    askForSpace();
}

void StorageOverviewPage::Private::followEntries()
{
    const std::vector<StorageEntry> &entries = overview.entries.get();
    if (arrived && !entries.empty()) {
        arrived = false;
        const QModelIndex from = before.empty() ? QModelIndex() : rows.indexOf(before);
        list->setCurrentIndex(from.isValid() ? from : rows.index(0));
        list->scrollTo(list->currentIndex());
        before = overview.shown.get();
    }
    tiles->show(entries, list->currentIndex().isValid() ? list->currentIndex().row() : -1);
    refreshButtons();
    refreshEmpty();
}

void StorageOverviewPage::Private::refreshHead()
{
    const bool counting = overview.counting.get();
    subtitle->setText(QStringLiteral("%1 · %2 in %3")
                          .arg(trail(overview.top.get(), overview.shown.get()), sizeText(overview.bytes.get()),
                               counted(overview.files.get(), QStringLiteral("Datei"), QStringLiteral("Dateien"))));
    back->setToolTip(overview.canGoUp() ? QStringLiteral("Zurück zum Ordner darüber (Rücktaste)")
                                        : QStringLiteral("Zurück zum Ordner (Rücktaste)"));
    progress->setVisible(counting);
    stop->setVisible(counting);
    again->setVisible(!counting);
    status->setText(overview.status.get());
}

void StorageOverviewPage::Private::refreshButtons()
{
    const StorageEntry *const entry = current();
    const bool file = entry && entry->kind == StorageEntry::Kind::File;
    const bool joined = entry && entry->kind == StorageEntry::Kind::SmallFiles;
    openButton->setText(file ? QStringLiteral("Im Ordner zeigen") : QStringLiteral("Ordner öffnen"));
    openButton->setAccessibleName(openButton->text());
    trashButton->setEnabled(entry && !joined);
    trashButton->setToolTip(!entry   ? QStringLiteral("Es ist nichts gewählt.")
                            : joined ? QStringLiteral("Mehrere kleine Dateien: im Ordner auswählen.")
                                     : entry->name);
}

void StorageOverviewPage::Private::refreshEmpty()
{
    const bool nothing = overview.entries.get().empty();
    stack->setCurrentWidget(nothing ? static_cast<QWidget *>(empty) : tiles);
    if (!nothing)
        return;
    if (overview.errorMessage.get())
        empty->setTexts(QStringLiteral("Der Ordner lässt sich nicht zählen"), *overview.errorMessage.get());
    else if (overview.counting.get())
        empty->setTexts(QStringLiteral("Wird gezählt …"), {});
    else
        empty->setTexts(QStringLiteral("Dieser Ordner ist leer"),
                        QStringLiteral("Sobald etwas darin liegt, steht hier, was wie viel Platz braucht."));
}

void StorageOverviewPage::Private::askForSpace()
{
    const QString once = QStringLiteral("Mehrfach verknüpfte Dateien sind einmal gezählt.");
    if (spaceJob.running()) {
        spaceOutdated = true;
        return;
    }
    if (space->text().isEmpty())
        space->setText(once);
    if (overview.top.get().empty())
        return;
    spaceJob.start(
        *spacePool, [ask = askSpace, folder = overview.shown.get()](JobControl &) { return ask(folder); },
        [this, once](const Result<VolumeSpace> &answer) {
            space->setText(answer ? spaceText(*answer) + once : once);
            if (std::exchange(spaceOutdated, false))
                askForSpace();
        });
}

} // namespace brellin

#include "App/Window/MainWindow.h"

#include "App/Window/DesktopPasteboard.h"
#include "App/Window/FileCommands.h"
#include "App/Window/FittingFrame.h"
#include "App/Window/LargeViewing.h"
#include "App/Window/PageMessage.h"
#include "App/Window/PlaceTitles.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "Features/StorageOverview.h"
#include "Look/Theme.h"
#include "Sidebar/FolderTree.h"
#include "Sidebar/Screens/SidebarView.h"
#include "System/PlainSetting.h"
#include "Transfers/Screens/TransferPanel.h"

#include <QAction>
#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace brellin {

MainWindow::MainWindow(const WindowServices &services, const StoredWindow &from)
    : m_services(services)
    , m_address(new AddressBar(services.folders(), services.panes.workers, services.panes.volumes, this))
    , m_search(new SearchField(services.folders(), this))
    , m_previewWidth(from.previewWidth)
{
    setObjectName(QStringLiteral("mainWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(scaled(880), scaled(520));
    buildActions();
    m_toolbar = new Toolbar(m_actions, m_address, m_search, this);
    connect(m_toolbar, &Toolbar::menuRequested, this, &MainWindow::showAllCommands);
    connect(m_toolbar, &Toolbar::historyRequested, this, &MainWindow::showHistory);
    connect(m_address, &AddressBar::pageStepClicked, this, [this](int step) { goToPageStep(step); });
    connect(m_address, &AddressBar::left, this, &MainWindow::focusPlace);
    connect(m_search, &SearchField::left, this, &MainWindow::focusPlace);
    connect(m_search, &SearchField::wentOn, this, [this] { tab()->activeView().focusFilters(); });
    connect(m_search, &SearchField::wentDown, this, [this] { tab()->activeView().focusFirst(); });
    const auto openBehind = [this](const Location &folder) { openTab(folder, TabOpening::InBackground); };
    connect(m_address, &AddressBar::backgroundTabRequested, this, openBehind);

    buildFileCommands();
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_toolbar);
    buildBody(from);
    column->addWidget(m_body, 1);

    for (const StoredTab &one : from.tabs)
        insertTab(m_tabPages->count(), one);
    if (m_tabPages->count() == 0)
        addTab(services.folders().home);
    m_tabs->setCurrent(std::clamp(from.current, 0, m_tabPages->count() - 1));
    raisePage(m_tabs->current());

    placeAt(from.frame);
    if (from.maximised)
        setWindowState(Qt::WindowMaximized);
    qApp->installEventFilter(this);
    connect(&Theme::shared(), &Theme::changed, this, QOverload<>::of(&QWidget::update));
    services.agent.agent.newSinceViewed.observe(this, [this](int number) { showBadge(number); });
    showBadge(services.agent.agent.newSinceViewed.get());
    m_transfers = new TransferPanel(services.transfers, this);
    connect(m_transfers, &TransferPanel::placeWanted, this, &MainWindow::placePanel);
    m_files->showWorkIn(*m_transfers);
    buildDoneCard();
    services.shortcuts.own.observe(this, [this](const auto &) { showKeys(); });
    showKeys();
    followClipboard();
    follow();
    m_files->visit(pane()->current.get());
    tab()->focusActive();
}

MainWindow::~MainWindow()
{
    // Stop observing first, so that nothing the panes publish while being destroyed is handled.
    m_following.reset();
    qApp->removeEventFilter(this);
}

void MainWindow::buildBody(const StoredWindow &from)
{
    m_body = new QSplitter(Qt::Horizontal, this);
    m_body->setObjectName(QStringLiteral("body"));
    m_body->setHandleWidth(1);
    m_body->setChildrenCollapsible(false);
    m_tree = std::make_unique<FolderTree>(m_services.expanded);
    m_sidebar = new SidebarView({m_services.pins, *m_tree, m_services.volumeList, m_services.panes.colors,
                                 m_services.folded, m_services.folders(), &m_services.thumbnails},
                                m_body);
    m_sidebar->setVisible(from.sidebar);
    m_services.undo.moves.observe(m_tree.get(), [this](const std::vector<EntryMove> &moves) { followInTree(moves); });
    takeDropsOnSidebar();
    connect(m_sidebar, &SidebarView::chosen, this, &MainWindow::choose);
    connect(m_sidebar, &SidebarView::chosenForNewTab, this, [this](const SidebarItem &item) {
        const Place wanted = placeOf(item, m_services.folders());
        const bool toFolder = wanted.kind == Place::Kind::Folder;
        openTab(toFolder ? wanted.location : pane()->current.get(), TabOpening::InBackground);
        if (!toFolder)
            tabAt(m_tabPages->count() - 1)->active().choose(item);
    });
    connect(m_sidebar, &SidebarView::failed, this, &MainWindow::fail);
    connect(m_sidebar, &SidebarView::propertiesWanted, this,
            [this](const Location &folder) { m_files->showProperties({folder}); });
    m_body->addWidget(m_sidebar);
    m_body->addWidget(buildPlaces());
    m_body->setStretchFactor(0, 0);
    m_body->setStretchFactor(1, 1);
    m_body->setSizes({scaled(from.sidebarWidth), scaled(1064)});
    connect(m_body, &QSplitter::splitterMoved, this, &MainWindow::changed);
}

QWidget *MainWindow::buildPlaces()
{
    auto *const whole = new QWidget(m_body);
    auto *const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_places = new QStackedWidget(whole);
    m_places->addWidget(buildPanes());
    m_message = new PageMessage(whole);
    column->addWidget(m_places, 1);
    column->addWidget(m_message);
    return whole;
}

QWidget *MainWindow::buildPanes()
{
    auto *const whole = new QWidget;
    auto *const column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_tabs = new TabBar(whole);
    column->addWidget(m_tabs);
    m_middle = new QSplitter(Qt::Horizontal, whole);
    m_middle->setObjectName(QStringLiteral("middle"));
    m_middle->setHandleWidth(1);
    m_middle->setChildrenCollapsible(false);
    m_tabPages = new QStackedWidget(m_middle);
    m_middle->addWidget(m_tabPages);
    m_middle->setStretchFactor(0, 1);
    column->addWidget(m_middle, 1);
    m_status = new StatusBar(whole);
    column->addWidget(m_status);

    takeDropsOnTabs();
    connect(m_tabs, &TabBar::addRequested, this, [this] { run(CommandId::NewTab); });
    connect(m_tabs, &TabBar::closeRequested, this, &MainWindow::closeTab);
    connect(m_tabs, &TabBar::menuRequested, this, &MainWindow::showTabMenu);
    connect(m_tabs, &TabBar::moved, this, &MainWindow::moveTabPage);
    connect(m_tabs, &TabBar::currentChanged, this, [this](int index) {
        if (index < 0 || index >= m_tabPages->count())
            return;
        raisePage(index);
        follow();
        tab()->focusActive();
        Q_EMIT changed();
    });
    if (plainSetting(m_services.defaults(), showPreviewKey, true))
        showPreview(true);
    return whole;
}

/// Fits the frame to a current screen, since screens may have changed since the last start.
void MainWindow::placeAt(const std::vector<int> &frame)
{
    if (frame.size() != 4) {
        resize(QSize(scaled(1280), scaled(800))
                   .boundedTo(fittingFrame(screen()->geometry(), screen()->availableGeometry()).size()));
        return;
    }
    const QRect wanted(frame[0], frame[1], frame[2], frame[3]);
    const QScreen *const there = QGuiApplication::screenAt(wanted.center());
    setGeometry(fittingFrame(wanted, (there ? there : screen())->availableGeometry()));
}

TabPage *MainWindow::makeTab(const StoredTab &from)
{
    auto *const page = new TabPage(m_services, from, m_tabPages);
    connect(page, &TabPage::activeChanged, this, [this, page] {
        if (page == tab())
            follow();
        Q_EMIT changed();
    });
    connect(page, &TabPage::shareChanged, this, &MainWindow::changed);
    connect(page, &TabPage::openRequested, this, &MainWindow::open);
    connect(page, &TabPage::tabRequested, this, &MainWindow::addTab);
    connect(page, &TabPage::backgroundTabRequested, this,
            [this](const Location &folder) { openTab(folder, TabOpening::InBackground); });
    connect(page, &TabPage::menuRequested, this, &MainWindow::showMenu);
    connect(page, &TabPage::rightsWanted, this, [this](const Location &entry) { m_files->showProperties({entry}); });
    connect(page, &TabPage::escaped, this, [] { clearCutFiles(); });
    connect(page, &TabPage::dropped, this, &MainWindow::drop);
    connect(page, &TabPage::failed, this, &MainWindow::fail);
    page->showCut(m_cut);
    const auto know = [this, page](BrowserModel *pane) {
        m_files->add(pane);
        pane->place.observe(page, [this, page](const Place &) {
            showTitles();
            if (page == tab())
                refreshState(); // some commands depend on the other pane
        });
    };
    connect(page, &TabPage::paneAdded, this, know);
    know(&page->panes().first());
    if (BrowserModel *const beside = page->panes().second())
        know(beside);
    return page;
}

BrowserModel *MainWindow::pane() const
{
    return &tab()->active();
}

/// Rebinds everything around the panes to the active pane.
void MainWindow::follow()
{
    BrowserModel *const now = pane();
    if (m_large)
        m_large->close();
    m_following = std::make_unique<QObject>();
    QObject *const receiver = m_following.get();
    m_address->setPane(now);
    m_search->setPane(now);
    m_status->setPane(now);
    const auto refresh = [this](const auto &) { refreshState(); };
    now->place.observe(receiver, [this](const Place &) {
        showTitles();
        showPlace();
        Q_EMIT changed();
    });
    now->current.observe(receiver, [this](const Location &folder) { m_files->visit(folder); });
    now->canGoBack.observe(receiver, refresh);
    now->canGoForward.observe(receiver, refresh);
    now->viewMode.observe(receiver, refresh);
    now->iconSize.observe(receiver, refresh);
    now->showHidden.observe(receiver, [this](bool hidden) {
        m_tree->setShowHidden(hidden);
        refreshState();
    });
    m_tree->setShowHidden(now->showHidden.get());
    now->selection.observe(receiver, [this](const Selection &) {
        askDeletable();
        refreshState();
        previewSelection();
    });
    now->displayedItems.observe(receiver, [this](const DisplayedItems &) { previewSelection(); });
    now->errorMessage.observe(receiver, [this, now](const std::optional<QString> &message) {
        if (message && place().isPage() && !now->readFailed())
            m_message->fail(*message);
    });
    tab()->panes().dualPane.observe(receiver, refresh);
    askDeletable();
    showTitles();
    showPlace();
    previewSelection();
}

void MainWindow::showTitles()
{
    for (int index = 0; index < m_tabPages->count(); ++index) {
        const TabPage *const page = tabAt(index);
        const Location folder = page->active().current.get();
        const Place &place = page->active().place.get();
        if (place.kind == Place::Kind::Tag)
            m_tabs->setTitle(index, titleOf(place, m_services.folders()), titleOf(place, m_services.folders()));
        else
            m_tabs->setTitle(index, m_services.folders().title(folder), shown(folder));
    }
}

void MainWindow::choose(const SidebarItem &item)
{
    if (placeOf(item, m_services.folders()).kind == Place::Kind::Trash)
        ensureTrash();
    pane()->choose(item);
    focusPlace();
}

/// Focuses the list of the active pane, or the page in its place.
void MainWindow::focusPlace()
{
    if (place().isPage())
        m_places->currentWidget()->setFocus();
    else
        tab()->focusActive();
}

StoredWindow MainWindow::stored() const
{
    StoredWindow window;
    for (int index = 0; index < m_tabPages->count(); ++index)
        window.tabs.push_back(tabAt(index)->stored());
    window.current = m_tabs->current();
    const QRect frame = normalGeometry().isValid() ? normalGeometry() : geometry();
    window.frame = {frame.x(), frame.y(), frame.width(), frame.height()};
    window.maximised = isMaximized();
    window.sidebar = m_sidebar->isVisibleTo(this);
    if (window.sidebar)
        window.sidebarWidth = m_body->sizes().constFirst() * 100 / std::max(1, scaled(100));
    window.previewWidth = m_previewWidth;
    return window;
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placePanel();
    Q_EMIT changed();
}

void MainWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
}

} // namespace brellin

#include "Agent/Screens/AgentView.h"
#include "App/Window/FileCommands.h"
#include "App/Window/LargeViewing.h"
#include "App/Window/MainWindow.h"
#include "App/Window/PageMessage.h"
#include "App/Window/PlaceTitles.h"
#include "App/Window/PlaceholderPage.h"
#include "App/Window/PreviewSide.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "ContentView/SelectionPreview.h"
#include "Features/Screens/NetworkPage.h"
#include "Features/Screens/ThumbnailImages.h"
#include "Features/Screens/TrashPage.h"
#include "Features/StorageOverview.h"
#include "History/Screens/UserHistoryPage.h"
#include "Look/Theme.h"
#include "Places/Crumbs.h"
#include "Sidebar/FolderTree.h"
#include "Sidebar/Screens/SidebarView.h"
#include "System/PrivateFolders.h"

#include <set>

namespace brellin {

namespace {

const QString pathMark = QStringLiteral(" › ");

} // namespace

const Place &MainWindow::place() const
{
    return pane()->place.get();
}

MainWindow::Page MainWindow::pageOf(const Place &shown)
{
    using enum Place::Kind;
    const QString title = titleOf(shown, m_services.folders());
    switch (shown.kind) {
    case Folder:
    case Search:
        break;
    case Tag:
        return {m_places->widget(0), {title}};
    case Trash:
        return {made(Trash, &MainWindow::makeTrashPage), {title}};
    case Photos:
        return {made(Photos, &MainWindow::makePhotosPage), {title}};
    case Network:
        return {made(Network, &MainWindow::makeNetworkPage), {title}};
    case Agent: {
        QWidget *const page = made(Agent, &MainWindow::makeAgentPage);
        return {page, m_agent->path().split(pathMark)};
    }
    case Device:
        return {made(Device, &MainWindow::makeDevicePage), {title}};
    case Storage:
        return {made(Storage, &MainWindow::makeStoragePage), storagePath()};
    case History:
        return {made(History, &MainWindow::makeHistoryPage), {title}};
    }
    return {m_places->widget(0), {}};
}

QWidget *MainWindow::made(Place::Kind kind, QWidget *(MainWindow::*make)())
{
    QWidget *&page = m_pages[kind];
    if (!page) {
        page = (this->*make)();
        m_places->addWidget(page);
    }
    return page;
}

QWidget *MainWindow::makeAgentPage()
{
    AgentPorts ports = m_services.agent;
    ports.askForFolder = [this](QWidget *asker, const FolderQuestion &question, const auto &chosen) {
        m_files->askForFolder(asker, question, chosen);
    };
    m_agent = new AgentView(ports, m_places);
    connect(&m_services.thumbnails, &ThumbnailImages::ready, m_agent, &AgentView::refreshThumbnails);
    connect(m_agent, &AgentView::pathChanged, this, [this] { showPlace(); });
    connect(m_agent, &AgentView::showRequested, this, &MainWindow::showEntry);
    return m_agent;
}

QWidget *MainWindow::makeNetworkPage()
{
    auto *const network = new NetworkPage(m_services.servers, m_places);
    connect(network, &NetworkPage::connected, this, [this](const Location &folder) { pane()->navigate(folder); });
    return network;
}

QWidget *MainWindow::makeTrashPage()
{
    auto *const trash = new TrashPage(m_services.trash, m_services.folders(), m_places);
    const FileOperations::Then tell{
        trash, [trash](const OperationOutcome &outcome) { trash->tellDeleted(outcome.failures, outcome.cancelled); },
        FileOperations::Failures::ToReceiver};
    connect(trash, &TrashPage::emptyWanted, this,
            [this, tell] { m_services.operations.emptyTrash(amountOf(m_services.trash.items.get()), tell); });
    connect(trash, &TrashPage::deleteWanted, this,
            [this, tell](const std::vector<Location> &places) { m_services.operations.deleteForGood(places, tell); });
    connect(trash, &TrashPage::placeWanted, this, &MainWindow::addTab);
    connect(trash, &TrashPage::returned, this, [this](const std::vector<EntryMove> &returned) {
        for (const EntryMove &move : returned)
            m_services.panes.sizes.touched(move.to);
        m_services.panes.colors.moved(returned);
        followInTree(returned);
    });
    return trash;
}

QWidget *MainWindow::makeHistoryPage()
{
    auto *const page = new UserHistoryPage(m_services.history, m_services.folders(), m_services.clock, m_places);
    connect(page, &UserHistoryPage::showRequested, this, [this](const Location &entry) {
        if (isAtOrBelow(entry, m_services.folders().trash.parent_path()))
            goToTrash();
        else
            showEntry(entry);
    });
    connect(page, &UserHistoryPage::undoRunRequested, this,
            [this](const QUuid &run) { m_services.agent.agent.undo(run); });
    m_services.agent.agent.history.observe(page, [this](const auto &) { m_services.history.reload(); });
    m_services.agent.agent.status.observe(page, [page](const QString &text) { page->tell(text); });
    return page;
}

QWidget *MainWindow::makePhotosPage()
{
    return new PlaceholderPage(QStringLiteral("photo.on.rectangle.angled"), QStringLiteral("Fotos-Mediathek"),
                               QStringLiteral("Hier werden Fotos nach Reisen und Anlässen sortiert. "
                                              "Diese Funktion kommt mit einer späteren Version."),
                               m_places);
}

QWidget *MainWindow::makeDevicePage()
{
    return new PlaceholderPage(QStringLiteral("camera"), QStringLiteral("Gerät"),
                               QStringLiteral("Hier werden Fotos von Kameras und Telefonen übernommen. "
                                              "Diese Funktion kommt mit einer späteren Version."),
                               m_places);
}

/// Raises the page of the active pane's place, and highlights that place in the sidebar.
void MainWindow::showPlace()
{
    const Place now = place();
    const auto [page, words] = pageOf(now);
    const bool arrived = m_places->currentWidget() != page;
    m_places->setCurrentWidget(page);
    if (arrived)
        m_message->dismiss();
    m_address->setPage(words);
    setWindowTitle(words.isEmpty() ? m_services.folders().title(pane()->current.get()) : words.constLast());
    m_sidebar->setCurrent(now);
    if (now.kind != Place::Kind::Storage)
        m_storage->cancel();
    else if (arrived || m_storage->top.get() != now.location)
        m_storage->count(now.location);
    refreshState();
    if (arrived)
        focusPlace();
}

void MainWindow::goBack()
{
    if (place().kind == Place::Kind::Agent && m_agent->path().contains(pathMark)) {
        m_agent->showStart();
    } else {
        pane()->goBack();
    }
}

void MainWindow::goToPageStep(int step)
{
    if (place().kind == Place::Kind::Agent && step == 0)
        m_agent->showStart();
    if (place().kind != Place::Kind::Storage)
        return;
    const std::vector<Crumb> crumbs = crumbsOf(m_storage->shown.get(), m_services.folders());
    if (static_cast<std::size_t>(step) < crumbs.size())
        pane()->navigate(crumbs[static_cast<std::size_t>(step)].folder);
}

void MainWindow::reload()
{
    pane()->reload();
    m_tree->refreshAll();
}

/// Branches that are not watched have to be told.
void MainWindow::followInTree(const std::vector<EntryMove> &moves)
{
    std::set<Location> folders;
    for (const EntryMove &move : moves) {
        for (const Location &entry : {move.from, move.to}) {
            if (!entry.empty())
                folders.insert(entry.parent_path());
        }
    }
    for (const Location &folder : folders)
        m_tree->refresh(folder);
}

void MainWindow::showBadge(int number)
{
    m_toolbar->setAgentBadge(number);
    m_sidebar->setAgentBadge(number);
}

/// On the page of the Trash by its own button, which tells failures there.
void MainWindow::emptyTrash()
{
    if (place().kind == Place::Kind::Trash)
        Q_EMIT static_cast<TrashPage *>(m_places->currentWidget())->emptyWanted();
    else
        m_files->emptyTrash(*pane());
}

/// Creates the Trash if the account never used it, since navigating to a missing folder fails.
void MainWindow::ensureTrash()
{
    if (const Result<void> made = createPrivateFolders(m_services.folders().trash); !made)
        fail(made.error().message);
}

void MainWindow::showEntry(const Location &entry)
{
    addTab(entry.parent_path());
    pane()->select({entry});
}

void MainWindow::showPreview(bool shown)
{
    if (shown && !m_preview) {
        m_preview = new PreviewSide(m_services, m_middle);
        connect(m_preview, &PreviewSide::tagToggled, this, &MainWindow::toggleTag);
        m_services.panes.sizes.observe(m_preview, [this](const auto &) {
            if (pane()->selection.get().size() > 1)
                previewSelection();
        });
        m_middle->addWidget(m_preview);
        m_middle->setStretchFactor(1, 0);
        m_middle->setSizes({scaled(800), scaled(m_previewWidth)});
        connect(m_middle, &QSplitter::splitterMoved, m_preview, [this] {
            m_previewWidth = m_preview->width() * 100 / std::max(1, scaled(100));
            Q_EMIT changed();
        });
    }
    if (m_preview)
        m_preview->setVisible(shown);
}

/// Nothing unless several are selected.
std::optional<PreviewSummary> MainWindow::summaryOfSelected() const
{
    const Selection &selected = pane()->selection.get();
    if (selected.size() < 2)
        return std::nullopt;
    return previewOfSelection(pane()->displayedItems.get(), selected,
                              [this](const FileItem &folder) { return pane()->knownSize(folder); });
}

void MainWindow::previewSelection()
{
    const bool covered = m_large && m_large->isOpen();
    if (m_preview && m_preview->isVisibleTo(this) && !covered)
        m_preview->show(pane()->onlySelected(), summaryOfSelected());
}

} // namespace brellin

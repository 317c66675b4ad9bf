#include "Agent/Screens/AgentView.h"
#include "App/Window/MainWindow.h"
#include "App/Window/PlaceholderPage.h"
#include "App/Window/PreviewSide.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "Features/Screens/NetworkPage.h"
#include "Features/Screens/ThumbnailImages.h"
#include "Features/Screens/TrashPage.h"
#include "Features/StorageOverview.h"
#include "Look/Theme.h"
#include "Sidebar/Screens/SidebarView.h"
#include "System/FileLock.h"

namespace brellin {

namespace {

const QString pathMark = QStringLiteral(" › ");

} // namespace

MainWindow::Place MainWindow::place() const
{
    const BrowserModel &now = *pane();
    if (m_storageFolder)
        return Place::Storage;
    if (now.showAgent.get())
        return Place::Agent;
    if (now.showPhotos.get())
        return Place::Photos;
    if (now.showNetwork.get())
        return Place::Network;
    if (now.showDevice.get())
        return Place::Device;
    return now.current.get() == m_services.folders().trash && !now.tagFilter.get() ? Place::Trash : Place::Folder;
}

QWidget *MainWindow::pageFor(Place wanted)
{
    QWidget *&page = m_pages[wanted];
    if (!page) {
        page = makePage(wanted);
        m_places->addWidget(page);
    }
    return page;
}

QWidget *MainWindow::makePage(Place wanted)
{
    switch (wanted) {
    case Place::Agent:
        m_agent = new AgentView(m_services.agent, m_places);
        connect(&m_services.thumbnails, &ThumbnailImages::ready, m_agent, &AgentView::refreshThumbnails);
        connect(m_agent, &AgentView::pathChanged, this, [this] { showPlace(); });
        connect(m_agent, &AgentView::showRequested, this, &MainWindow::showEntry);
        return m_agent;
    case Place::Network: {
        auto *const network = new NetworkPage(m_services.servers, m_places);
        connect(network, &NetworkPage::connected, this, [this](const Location &folder) { pane()->navigate(folder); });
        return network;
    }
    case Place::Trash: {
        auto *const trash = new TrashPage(m_services.trash, m_places);
        connect(trash, &TrashPage::placeWanted, this, &MainWindow::addTab);
        connect(trash, &TrashPage::returned, this, [this](const std::vector<Location> &places) {
            for (const Location &place : places)
                m_services.panes.sizes.touched(place);
        });
        return trash;
    }
    case Place::Photos:
        return new PlaceholderPage(QStringLiteral("photo.on.rectangle.angled"), QStringLiteral("Fotos-Mediathek"),
                                   QStringLiteral("Hier werden Fotos nach Reisen und Anlässen sortiert. "
                                                  "Diese Funktion kommt mit einer späteren Version."),
                                   m_places);
    case Place::Device:
        return new PlaceholderPage(QStringLiteral("camera"), QStringLiteral("Gerät"),
                                   QStringLiteral("Hier werden Fotos von Kameras und Telefonen übernommen. "
                                                  "Diese Funktion kommt mit einer späteren Version."),
                                   m_places);
    case Place::Storage:
        return makeStoragePage();
    case Place::Folder:
        break;
    }
    return m_places->widget(0);
}

QStringList MainWindow::pagePath(Place now) const
{
    switch (now) {
    case Place::Agent:
        return m_agent ? m_agent->path().split(pathMark) : QStringList();
    case Place::Photos:
        return {QStringLiteral("Fotos-Mediathek")};
    case Place::Network:
        return {QStringLiteral("Netzwerk")};
    case Place::Device:
        return {pane()->showDevice.get().value_or(QString())};
    case Place::Trash:
        return {QStringLiteral("Papierkorb")};
    case Place::Storage:
        return storagePath();
    case Place::Folder:
        break;
    }
    return {};
}

/// Puts the page of the active pane's place in front, and marks that place in the sidebar.
void MainWindow::showPlace()
{
    const Place now = place();
    QWidget *const page = now == Place::Folder ? m_places->widget(0) : pageFor(now);
    const bool arrived = m_places->currentWidget() != page;
    m_places->setCurrentWidget(page);
    const QStringList path = pagePath(now);
    m_address->setPage(path);
    setWindowTitle(path.isEmpty() ? m_services.folders().title(pane()->current.get()) : path.constLast());
    using Kind = SidebarChoice::Kind;
    const std::optional<QString> &tag = pane()->tagFilter.get();
    switch (now) {
    case Place::Agent:
        m_sidebar->setCurrent(SidebarChoice::special(Kind::Agent));
        break;
    case Place::Photos:
        m_sidebar->setCurrent(SidebarChoice::special(Kind::Photos));
        break;
    case Place::Network:
        m_sidebar->setCurrent(SidebarChoice::special(Kind::Network));
        break;
    case Place::Trash:
        m_sidebar->setCurrent(SidebarChoice::special(Kind::Trash));
        break;
    case Place::Device:
        break;
    case Place::Storage:
    case Place::Folder:
        if (tag)
            m_sidebar->setCurrent(SidebarChoice::tag(*tag));
        else
            m_sidebar->setCurrent(pane()->current.get());
    }
    refreshState();
    if (arrived && now != Place::Folder)
        page->setFocus();
}

void MainWindow::leavePage()
{
    if (place() == Place::Agent && m_agent && m_agent->path().contains(pathMark)) {
        m_agent->showStart();
        return;
    }
    if (m_storageFolder) {
        m_storageFolder.reset();
        m_storage->cancel();
        showPlace();
        tab()->focusActive();
        return;
    }
    if (place() == Place::Trash) {
        pane()->goBack();
        return;
    }
    // To where the pane is: that leaves whatever stands in its place.
    pane()->navigate(pane()->current.get());
    tab()->focusActive();
}

void MainWindow::goToPageStep(int step)
{
    if (place() == Place::Agent && m_agent && step == 0)
        m_agent->showStart();
}

void MainWindow::showBadge(int number)
{
    m_toolbar->setAgentBadge(number);
    m_sidebar->setAgentBadge(number);
}

/// An account that never trashed anything has no such folder, and a place that cannot be entered is no place.
void MainWindow::ensureTrash()
{
    if (const Result<void> made = createPrivateFolders(m_services.folders().trash); !made)
        say(made.error().message);
}

void MainWindow::showEntry(const Location &entry)
{
    addTab(entry.parent_path());
    pane()->setSelection(Selection({entry}));
    const QModelIndexList rows = tab()->activeView().view().selectionModel()->selectedRows();
    if (!rows.isEmpty())
        tab()->activeView().view().scrollTo(rows.constFirst());
}

void MainWindow::showPreview(bool shown)
{
    if (shown && !m_preview) {
        m_preview = new PreviewSide(m_services, m_middle);
        connect(m_preview, &PreviewSide::tagToggled, this, &MainWindow::toggleTag);
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

void MainWindow::previewSelection()
{
    if (m_preview && m_preview->isVisibleTo(this))
        m_preview->show(pane()->onlySelected());
}

} // namespace brellin

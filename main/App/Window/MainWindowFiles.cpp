#include "App/Window/DoneCard.h"
#include "App/Window/FileCommands.h"
#include "App/Window/MainWindow.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "Disk/FileAttributes.h"
#include "Disk/OnWorker.h"
#include "Features/Screens/StorageOverviewPage.h"
#include "Features/StorageOverview.h"
#include "Look/YesNoSheet.h"
#include "Places/Crumbs.h"
#include "Sidebar/Screens/SidebarView.h"
#include "Transfers/Screens/TransferPanel.h"

namespace brellin {

void MainWindow::buildFileCommands()
{
    m_storage = std::make_unique<StorageOverview>();
    m_files = new FileCommands(m_services, this);
    connect(m_files, &FileCommands::said, this, &MainWindow::say);
    connect(m_files, &FileCommands::failed, this, &MainWindow::fail);
    connect(m_files, &FileCommands::stateChanged, this, [this] {
        if (m_tabPages && tab())
            refreshState();
    });
    connect(m_address, &AddressBar::dropped, this, [this](const DroppedFiles &files) { drop(files, pane()); });
}

/// A drop on a tab goes into the folder of its active pane.
void MainWindow::takeDropsOnTabs()
{
    auto *const drops = new FileDrop(m_tabs->bar(), [this](QPoint at) -> std::optional<Location> {
        const int index = m_tabs->bar()->tabAt(at);
        if (index < 0 || index >= m_tabPages->count())
            return std::nullopt;
        return static_cast<TabPage *>(m_tabPages->widget(index))->active().current.get();
    });
    connect(drops, &FileDrop::dropped, this, [this](const DroppedFiles &files) { drop(files, pane()); });
    connect(drops, &FileDrop::over, this,
            [this](const auto &folder, QPoint at) { m_tabs->showDrop(folder ? m_tabs->bar()->tabAt(at) : -1); });
    connect(drops, &FileDrop::sprung, this, [this](const Location &, QPoint at) {
        if (const int index = m_tabs->bar()->tabAt(at); index >= 0 && index != m_tabs->current())
            showTab(index);
    });
}

void MainWindow::takeDropsOnSidebar()
{
    auto *const drops = new FileDrop(m_sidebar->dropArea(), [this](QPoint at) { return m_sidebar->folderAt(at); });
    connect(drops, &FileDrop::dropped, this, [this](const DroppedFiles &files) { drop(files, pane()); });
    connect(drops, &FileDrop::over, m_sidebar, [this](const auto &folder, QPoint at) {
        m_sidebar->showDropAt(folder ? std::optional(at) : std::nullopt);
    });
    connect(drops, &FileDrop::sprung, this, [this](const Location &folder) {
        if (pane()->place.get() != Place::folder(folder))
            pane()->navigate(folder);
    });
}

void MainWindow::drop(const DroppedFiles &files, BrowserModel *onto)
{
    m_files->transfer(files.sources, files.destination,
                      files.kind == DropKind::Move ? TransferKind::Move : TransferKind::Copy, *onto);
}

/// Places the transfer panel above the status line, beside the sidebar.
void MainWindow::placePanel()
{
    if (!m_done)
        return;
    const QRect area(m_places->mapTo(this, QPoint(0, 0)), m_places->size());
    const QRect above = area.adjusted(0, 0, 0, place().isPage() ? 0 : -m_status->height());
    m_transfers->placeIn(above);
    m_done->placeIn(above, m_transfers);
}

void MainWindow::buildDoneCard()
{
    m_done = new DoneCard(this);
    connect(m_files, &FileCommands::done, m_done, &DoneCard::tell);
    connect(m_files, &FileCommands::doneIsPast, m_done, &QWidget::hide);
    connect(m_done, &DoneCard::undoRequested, this, [this] { run(CommandId::Undo); });
    connect(m_done, &DoneCard::placeWanted, this, &MainWindow::placePanel);
    connect(m_transfers, &TransferPanel::shownChanged, this, &MainWindow::placePanel);
}

QWidget *MainWindow::makeStoragePage()
{
    auto *const page = new StorageOverviewPage(*m_storage, m_places);
    connect(page, &StorageOverviewPage::openWanted, this, &MainWindow::openFromStorage);
    connect(page, &StorageOverviewPage::leaveWanted, this, &MainWindow::goBack);
    connect(page, &StorageOverviewPage::trashWanted, this, [this](const std::vector<Location> &entries) {
        const QString what = entries.size() == 1
                                 ? QStringLiteral("„%1“ in den Papierkorb legen?").arg(shownName(entries.front()))
                                 : QStringLiteral("%1 Elemente in den Papierkorb legen?").arg(entries.size());
        auto *const question =
            new YesNoSheet(what, QStringLiteral("Platz wird erst frei, wenn der Papierkorb geleert wird."),
                           QStringLiteral("In den Papierkorb legen"), ButtonKind::Danger, this);
        connect(question, &YesNoSheet::accepted, this, [this, entries] {
            m_services.operations.trash(entries, {this, [this](const OperationOutcome &outcome) {
                                                      std::vector<Location> gone;
                                                      for (const UserAction::Entry &entry : outcome.action.entries)
                                                          gone.push_back(entry.from);
                                                      m_storage->removed(gone);
                                                  }});
        });
        question->open();
    });
    m_storage->shown.observe(page, [this](const Location &) {
        if (place().kind == Place::Kind::Storage)
            m_address->setPage(storagePath());
    });
    return page;
}

/// Crumbs of the storage page, e.g. "Benutzerordner", "Downloads", "Speicherplatz".
QStringList MainWindow::storagePath() const
{
    QStringList words;
    for (const Crumb &crumb : crumbsOf(m_storage->shown.get(), m_services.folders()))
        words.append(crumb.title);
    return words << QStringLiteral("Speicherplatz");
}

/// Opens a folder in this pane, a file selected in a new tab. Which it is, is read on a worker.
void MainWindow::openFromStorage(const Location &entry)
{
    onWorker(
        m_services.panes.workers, entry, MountWorkers::Turn::OfMount, this, [entry] { return readAttributes(entry); },
        [this, entry](const Result<FileAttributes> &attributes) {
            pane()->leavePage();
            if (attributes && attributes->isFolder())
                pane()->navigate(entry);
            else
                showEntry(entry);
        });
}

} // namespace brellin

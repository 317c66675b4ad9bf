#include "App/Window/DesktopPasteboard.h"
#include "App/Window/EditableFocus.h"
#include "App/Window/FileCommands.h"
#include "App/Window/LargeViewing.h"
#include "App/Window/MainWindow.h"
#include "App/Window/PageMessage.h"
#include "App/Window/PreviewSide.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "Disk/OnWorker.h"
#include "FileOperations/TrashActions.h"
#include "FileOperations/Unpacking.h"
#include "Look/SheetFrame.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/SidebarView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QTimer>

namespace brellin {

void MainWindow::buildActions()
{
    for (const WindowCommand &one : commandTable()) {
        auto *const action = new QAction(one.title, this);
        action->setObjectName(QStringLiteral("command%1").arg(static_cast<int>(one.id)));
        action->setShortcutContext(Qt::WindowShortcut);
        connect(action, &QAction::triggered, this, [this, id = one.id] { run(id); });
        action->setAutoRepeat(one.id != CommandId::LargeView);
        addAction(action);
        m_actions[one.id] = action;
    }
}

void MainWindow::showKeys()
{
    for (const auto &[id, action] : m_actions) {
        const Shortcuts::Keys keys = m_services.shortcuts.keysOf(id);
        action->setShortcuts(QList<QKeySequence>(keys.begin(), keys.end()));
    }
    m_toolbar->showKeys(m_services.shortcuts);
    m_tabs->showKeyOfAdding(m_services.shortcuts.textOf(CommandId::NewTab));
}

CommandState MainWindow::state() const
{
    CommandState now;
    now.pane = pane();
    now.page = place().isPage();
    now.agent = place().kind == Place::Kind::Agent;
    now.results = place().kind == Place::Kind::Search || place().kind == Place::Kind::Tag;
    now.manyTabs = m_tabPages->count() > 1;
    now.closedTabs = !m_closedTabs.empty();
    now.dualPane = tab()->panes().dualPane.get();
    now.preview = m_preview && !m_preview->isHidden();
    now.sidebar = m_sidebar->isVisibleTo(this);
    now.selected = !now.pane->selection.get().empty();
    now.onlyFolders = now.selected && now.pane->selectionSummary().onlyFolders();
    const FileItem *const only = now.pane->onlySelected();
    now.archive = only && !only->isFolder && isUnpackable(only->nameBytes);
    now.deletable = now.selected && m_deletable;
    now.clipboard = m_clipboardHasFiles;
    now.undo = m_services.undo.title.get();
    now.redo = m_services.undo.redoTitle.get();
    return now;
}

/// Reading the clipboard asks another process, so it is done once per change, and only after the window is shown.
void MainWindow::followClipboard()
{
    const auto look = [this] {
        const std::optional<ClipboardFiles> files = filesOnClipboard();
        m_clipboardHasFiles = files.has_value();
        m_cut.clear();
        if (files && files->purpose == ClipboardFiles::Purpose::Cut)
            m_cut.insert(files->entries.begin(), files->entries.end());
        for (int index = 0; index < m_tabPages->count(); ++index)
            tabAt(index)->showCut(m_cut);
        refreshState();
    };
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, look);
    QTimer::singleShot(0, this, look);
}

/// Whether a volume has a Trash is read on a worker, once for each folder; it is asked again before anything is deleted.
void MainWindow::askDeletable()
{
    const std::optional<std::uint32_t> first = pane()->selectionSummary().first;
    if (!first)
        return;
    const Location entry = pane()->items.get()[*first].location();
    const Location folder = entry.parent_path();
    if (folder == m_deletableIn)
        return;
    m_deletableIn = folder;
    m_deletable = false;
    onWorker(
        m_services.panes.workers, entry, MountWorkers::Turn::OfMount, this,
        [entry, home = m_services.folders().trash.parent_path(), &volumes = m_services.panes.volumes] {
            return mayDeleteForGood(entry, {home, volumes});
        },
        [this, folder](bool may) {
            if (folder != m_deletableIn)
                return;
            m_deletable = may;
            refreshState();
        });
}

void MainWindow::refreshState()
{
    const CommandState now = state();
    for (const WindowCommand &one : commandTable())
        m_actions.at(one.id)->setEnabled(one.enabled(now));
    m_actions.at(CommandId::Undo)->setText(now.undo.value_or(windowCommand(CommandId::Undo).title));
    m_actions.at(CommandId::Redo)->setText(now.redo.value_or(windowCommand(CommandId::Redo).title));
    m_toolbar->showState(now);
}

void MainWindow::run(CommandId id)
{
    if (hasSheet())
        return;
    tab()->activeView().settle();
    windowCommand(id).run({*this, *m_files, *pane()});
    refreshState();
}

void MainWindow::newTab()
{
    addTab(pane()->current.get());
}

void MainWindow::newWindow()
{
    Q_EMIT newWindowRequested(pane()->current.get());
}

void MainWindow::openSelection()
{
    tab()->activeView().openSelection();
}

void MainWindow::openInNewTabs()
{
    for (const FileItem &item : pane()->selectedItems())
        if (item.isFolder)
            addTab(item.location());
}

void MainWindow::showInFolder()
{
    if (const FileItem *const only = pane()->onlySelected())
        pane()->showEntry(only->location());
}

void MainWindow::showLarge()
{
    if (!m_large) {
        m_large = new LargeViewing(m_services, this);
        connect(m_large, &LargeViewing::openRequested, this, [this](const FileItem &item) {
            if (item.isFolder)
                pane()->navigate(item.location());
            else
                open({item});
        });
        connect(m_large, &LargeViewing::closed, this, [this] {
            focusPlace();
            previewSelection();
        });
    }
    m_large->open(*pane());
}

void MainWindow::goHome()
{
    pane()->navigate(m_services.folders().home);
}

void MainWindow::goToDownloads()
{
    pane()->navigate(m_services.folders().dir(StandardFolder::Downloads));
}

void MainWindow::goToTrash()
{
    ensureTrash();
    pane()->choose(SidebarItem::place(m_services.folders().trash));
}

void MainWindow::editPath()
{
    m_address->editPath();
}

void MainWindow::focusSearch()
{
    m_search->setFocus();
    m_search->selectAll();
}

void MainWindow::searchContents()
{
    pane()->setSearchTerms({pane()->searchTerms.get().filters, true});
    focusSearch();
}

void MainWindow::togglePin()
{
    if (const Result<void> pinned = m_services.pins.toggle(pane()->current.get()); !pinned)
        fail(pinned.error().message);
}

void MainWindow::toggleDualPane()
{
    if (const Result<void> kept = tab()->panes().setDualPane(!tab()->panes().dualPane.get()); !kept)
        fail(kept.error().message);
    tab()->focusActive();
    Q_EMIT changed();
}

void MainWindow::switchPane()
{
    tab()->switchPane();
}

void MainWindow::swapPanes()
{
    tab()->swapPanes();
    Q_EMIT changed();
}

void MainWindow::togglePreview()
{
    const bool shown = !state().preview;
    if (const Result<void> kept = m_services.defaults().setValue(showPreviewKey, shown); !kept)
        fail(kept.error().message);
    showPreview(shown);
    previewSelection();
}

void MainWindow::toggleSidebar()
{
    m_sidebar->setVisible(!m_sidebar->isVisible());
    Q_EMIT changed();
}

/// The mouse's own buttons for back and forward, in the pane or page they are pressed over. The second of two quick presses
/// is a double click.
bool MainWindow::goByMouse(const QWidget *over, const QMouseEvent &press)
{
    const bool back = press.button() == Qt::BackButton;
    if ((!back && press.button() != Qt::ForwardButton) || !m_places->isAncestorOf(over) || hasSheet())
        return false;
    tab()->activatePaneOf(over);
    const CommandId id = back ? CommandId::Back : CommandId::Forward;
    if (m_actions.at(id)->isEnabled())
        run(id);
    return true;
}

/// While a sheet is open no shortcut runs; an editable field keeps its own editing keys.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        const auto *const over = qobject_cast<QWidget *>(watched);
        return over && goByMouse(over, *static_cast<QMouseEvent *>(event));
    }
    if (event->type() != QEvent::ShortcutOverride || watched != QApplication::focusWidget() || !isActiveWindow())
        return QWidget::eventFilter(watched, event);
    if (!keepsFromCommands(QKeySequence(static_cast<QKeyEvent *>(event)->keyCombination())))
        return QWidget::eventFilter(watched, event);
    event->accept();
    return true;
}

/// Whether the focused widget gets the key although a command has it.
bool MainWindow::keepsFromCommands(const QKeySequence &typed) const
{
    if (hasSheet())
        return true;
    const auto found = std::ranges::find_if(commandTable(), [&](const WindowCommand &one) {
        const Shortcuts::Keys keys = m_services.shortcuts.keysOf(one.id);
        return std::ranges::find(keys, typed) != keys.end();
    });
    if (m_large && m_large->isOpen())
        return found == commandTable().end() || !mayRunInLargeView(found->id);
    if (found == commandTable().end())
        return false;
    // Space presses a focused button, and belongs to a name whose beginning is typed in the list.
    const PaneView &pane = tab()->activeView();
    if (typed == QKeySequence(Qt::Key_Space) && (!pane.view().hasFocus() || pane.isTyping()))
        return true;
    return found->editing == WhileEditing::LeavesKeys && isEditable(QApplication::focusWidget());
}

/// Commands for the selection only while that is what the view shows.
bool MainWindow::mayRunInLargeView(CommandId id) const
{
    using enum CommandId;
    if (id == Undo || id == Redo || id == Quit)
        return true;
    return m_large->showsSelection() && (id == MoveToTrash || id == Copy || id == CopyPath);
}

/// Whether a sheet is open over this window.
bool MainWindow::hasSheet() const
{
    const QList<SheetFrame *> sheets = findChildren<SheetFrame *>(QString(), Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(sheets, &QWidget::isVisible);
}

void MainWindow::say(const QString &message)
{
    if (place().isPage())
        m_message->say(message);
    else
        m_status->say(message);
}

void MainWindow::fail(const QString &message)
{
    if (place().isPage())
        m_message->fail(message);
    else
        pane()->showError(message);
}

} // namespace brellin

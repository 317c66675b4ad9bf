#include "App/Window/DesktopPasteboard.h"
#include "App/Window/EditableFocus.h"
#include "App/Window/FileCommands.h"
#include "App/Window/MainWindow.h"
#include "App/Window/PreviewSide.h"
#include "App/Window/StatusBar.h"
#include "App/Window/TabBar.h"
#include "FileOperations/Unpacking.h"
#include "Look/Cards.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/SidebarView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QTimer>

namespace brellin {

namespace {

constexpr double iconStep = 16;

} // namespace

void MainWindow::buildActions()
{
    for (const WindowCommand &one : commandTable()) {
        auto *const action = new QAction(one.title, this);
        action->setObjectName(QStringLiteral("command%1").arg(static_cast<int>(one.id)));
        action->setShortcuts(QList<QKeySequence>(one.keys.begin(), one.keys.end()));
        action->setShortcutContext(Qt::WindowShortcut);
        connect(action, &QAction::triggered, this, [this, id = one.id] { run(id); });
        addAction(action);
        m_actions[one.id] = action;
    }
}

CommandState MainWindow::state() const
{
    CommandState now;
    now.pane = pane();
    now.page = place().isPage();
    now.agent = place().kind == Place::Kind::Agent;
    now.manyTabs = m_tabPages->count() > 1;
    now.dualPane = tab()->panes().dualPane.get();
    now.preview = m_preview && !m_preview->isHidden();
    now.sidebar = m_sidebar->isVisibleTo(this);
    now.selected = !now.pane->selection.get().empty();
    now.onlyFolders = now.selected && now.pane->selectionSummary().onlyFolders();
    const FileItem *const only = now.pane->onlySelected();
    now.archive = only && !only->isFolder && isUnpackable(only->nameBytes);
    now.clipboard = m_clipboardHasFiles;
    now.undo = m_services.undo.title.get();
    now.redo = m_services.undo.redoTitle.get();
    return now;
}

/// What lies on the clipboard is asked of another program: once for each change, and not before the window is there.
void MainWindow::followClipboard()
{
    const auto look = [this] {
        m_clipboardHasFiles = filesOnClipboard().has_value();
        refreshState();
    };
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, look);
    QTimer::singleShot(0, this, look);
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
    using enum CommandId;
    switch (id) {
    case NewTab:
        addTab(pane()->current.get());
        break;
    case NewWindow:
        Q_EMIT newWindowRequested(pane()->current.get());
        break;
    case CloseTab:
        closeTab(m_tabs->current());
        break;
    case NextTab:
        m_tabs->setCurrent((m_tabs->current() + 1) % m_tabs->count());
        break;
    case PreviousTab:
        m_tabs->setCurrent((m_tabs->current() + m_tabs->count() - 1) % m_tabs->count());
        break;
    case Quit:
        Q_EMIT quitRequested();
        break;
    case Settings:
        showSettings();
        break;
    case EditPath:
        m_address->editPath();
        break;
    case Search:
        m_search->setFocus();
        m_search->selectAll();
        break;
    case DualPane:
        if (const Result<void> kept = tab()->panes().setDualPane(!tab()->panes().dualPane.get()); !kept)
            say(kept.error().message);
        tab()->focusActive();
        Q_EMIT changed();
        break;
    case OtherPane:
        tab()->switchPane();
        break;
    case Preview:
        togglePreview();
        break;
    case Sidebar:
        m_sidebar->setVisible(!m_sidebar->isVisible());
        Q_EMIT changed();
        break;
    case Pin:
        if (const Result<void> pinned = m_services.pins.toggle(pane()->current.get()); !pinned)
            say(pinned.error().message);
        break;
    default:
        runPaneCommand(id);
    }
    refreshState();
}

void MainWindow::togglePreview()
{
    const bool shown = !state().preview;
    if (const Result<void> kept = m_services.defaults().setValue(showPreviewKey, shown); !kept)
        say(kept.error().message);
    showPreview(shown);
    previewSelection();
}

/// What the active pane does.
void MainWindow::runPaneCommand(CommandId id)
{
    using enum CommandId;
    BrowserModel &now = *pane();
    switch (id) {
    case NewFolder:
        now.newFolder();
        break;
    case Open:
        tab()->activeView().openSelection();
        break;
    case OpenInNewTab:
        for (const FileItem &item : now.selectedItems())
            if (item.isFolder)
                addTab(item.location());
        break;
    case Rename:
        now.beginRenameSelection();
        break;
    case SelectAll:
        now.selectAll();
        break;
    case ShowHidden:
        now.setShowHidden(!now.showHidden.get());
        break;
    case Details:
        now.setViewMode(ViewMode::Details);
        break;
    case Icons:
        now.setViewMode(ViewMode::Icons);
        break;
    case LargerIcons:
        now.zoomIcons(iconStep);
        break;
    case SmallerIcons:
        now.zoomIcons(-iconStep);
        break;
    default:
        if (!runGoCommand(id, now))
            m_files->run(id, now);
    }
}

/// Where the active pane goes. False for what is no such command.
bool MainWindow::runGoCommand(CommandId id, BrowserModel &now)
{
    using enum CommandId;
    switch (id) {
    case Back:
        goBack();
        break;
    case Forward:
        now.goForward();
        break;
    case Up:
        now.goUp();
        break;
    case Reload:
        now.reload();
        break;
    case Home:
        now.navigate(m_services.folders().home);
        break;
    case Downloads:
        now.navigate(m_services.folders().dir(StandardFolder::Downloads));
        break;
    case Photos:
        now.choose(SidebarItem::photos());
        break;
    case CommandId::Trash:
        ensureTrash();
        now.choose(SidebarItem::place(m_services.folders().trash));
        break;
    case CommandId::Agent:
        now.choose(SidebarItem::agent());
        break;
    default:
        return false;
    }
    return true;
}

/// A sheet keeps every key, and a field those that it uses, whatever command they stand for.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride || watched != QApplication::focusWidget() || !isActiveWindow())
        return QWidget::eventFilter(watched, event);
    const bool editable = isEditable(QApplication::focusWidget());
    const QKeySequence typed(static_cast<QKeyEvent *>(event)->keyCombination());
    const bool kept = hasSheet() || (editable && std::ranges::any_of(commandTable(), [&](const WindowCommand &one) {
                                         return one.editing == WhileEditing::LeavesKeys &&
                                                std::ranges::find(one.keys, typed) != one.keys.end();
                                     }));
    if (!kept)
        return QWidget::eventFilter(watched, event);
    event->accept();
    return true;
}

/// A question or an editor stands over the window.
bool MainWindow::hasSheet() const
{
    const QList<SheetFrame *> sheets = findChildren<SheetFrame *>(QString(), Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(sheets, &QWidget::isVisible);
}

void MainWindow::say(const QString &message)
{
    m_status->say(message);
}

} // namespace brellin

#pragma once

#include "App/Window/TabPage.h"
#include "App/Window/Toolbar.h"
#include "ContentView/StoredWindows.h"

#include <QPointer>
#include <QStackedWidget>

#include <functional>
#include <map>

class QMenu;

namespace brellin {

class AgentView;
class DoneCard;
class FileCommands;
class FolderTree;
class LargeViewing;
class NetworkPage;
class PageMessage;
class PreviewSide;
struct PreviewSummary;
class SidebarView;
class StorageOverview;
class StatusBar;
class TabBar;
class TransferPanel;
class TrashPage;
class YesNoSheet;

/// A window of the file manager: toolbar, sidebar, tabs with panes, preview, status line, and pages shown instead of
/// the panes. It connects widgets to models; all decisions are in the models.
class MainWindow : public QWidget {
    Q_OBJECT
public:
    MainWindow(const WindowServices &services, const StoredWindow &from);
    ~MainWindow() override;

    StoredWindow stored() const;
    /// Opens a tab and shows it.
    void addTab(const Location &folder);
    /// Opens the entry's folder in a new tab and selects the entry.
    void showEntry(const Location &entry);
    /// Runs the command from the table, unless a sheet is open.
    void run(CommandId id);
    CommandState state() const;

    // Called by the command table for the window itself.
    void newTab();
    void newWindow();
    void closeCurrentTab();
    void closeOthers();
    void duplicateCurrentTab();
    /// Opens the tab closed last again, with the folders it showed.
    void reopenTab();
    void nextTab();
    void previousTab();
    void openSelection();
    /// Opens each selected folder in a new tab.
    void openInNewTabs();
    /// Shows the selected entry, or the current one, in the large view.
    void showLarge();
    /// The selected result in its folder.
    void showInFolder();
    /// Leaves a subpage of the agent for its start page, or a page for the folder it covers; otherwise goes back in the
    /// history.
    void goBack();
    void goHome();
    void goToDownloads();
    void goToTrash();
    void emptyTrash();
    void editPath();
    void focusSearch();
    /// The search field, for a search in contents.
    void searchContents();
    void togglePin();
    void toggleDualPane();
    void switchPane();
    void swapPanes();
    void togglePreview();
    void toggleSidebar();
    void showSettings();
    void showShortcuts();
    /// The menu of columns, sorting and grouping of the active pane.
    void showArrangement();
    void showAbout();
    /// The menu of all commands.
    void openMenu();
    /// Reads the pane and the sidebar's tree again.
    void reload();

    /// Whether the program may quit now. If work is running, returns false and asks; emits quitRequested() when the
    /// user agrees.
    bool mayQuit();
    /// Closes without asking about running work.
    void closeUnasked();

    Q_SIGNAL void newWindowRequested(const brellin::Location &folder);
    Q_SIGNAL void quitRequested();
    /// Emitted when something that is stored for the next start has changed.
    Q_SIGNAL void changed();
    Q_SIGNAL void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class TabOpening { InFront, InBackground };
    /// The page shown instead of the panes, and its crumbs in the address bar; null if the panes are shown.
    struct Page {
        QWidget *widget = nullptr;
        QStringList words;
    };

    void buildActions();
    void buildBody(const StoredWindow &from);
    QWidget *buildPlaces();
    QWidget *buildPanes();
    void buildFileCommands();
    void takeDropsOnTabs();
    void takeDropsOnSidebar();
    void followInTree(const std::vector<EntryMove> &moves);
    void drop(const DroppedFiles &files, BrowserModel *onto);
    void openFromStorage(const Location &entry);
    void placePanel();
    void buildDoneCard();
    bool isLastWindow() const;
    bool wouldCutShort() const;
    void askToClose(const std::function<void()> &agreed);
    void placeAt(const std::vector<int> &frame);
    TabPage *makeTab(const StoredTab &from);
    void openTab(const Location &folder, TabOpening opening);
    void insertTab(int index, const StoredTab &wanted);
    void raisePage(int index);
    void showTab(int index);
    void closeTab(int index);
    void closeOtherTabs(int index);
    void duplicateTab(int index);
    void moveTabPage(int from, int to);
    void showHistory(NavigationHistory::Way way, QWidget *under);
    void showTabMenu(int index, const QPoint &global);
    bool goByMouse(const QWidget *over, const QMouseEvent &press);

    TabPage *tabAt(int index) const;
    TabPage *tab() const;
    BrowserModel *pane() const;
    void follow();
    void showTitles();
    void showBadge(int number);
    void choose(const SidebarItem &item);
    void focusPlace();
    void ensureTrash();
    void goToPageStep(int step);
    void showPreview(bool shown);
    void previewSelection();
    void askDeletable();
    std::optional<PreviewSummary> summaryOfSelected() const;
    void showPlace();
    void refreshState();
    void followClipboard();
    bool hasSheet() const;
    bool keepsFromCommands(const QKeySequence &typed) const;
    bool mayRunInLargeView(CommandId id) const;
    const Place &place() const;
    Page pageOf(const Place &shown);
    QWidget *made(Place::Kind kind, QWidget *(MainWindow::*make)());
    QWidget *makeAgentPage();
    QWidget *makeNetworkPage();
    QWidget *makeTrashPage();
    QWidget *makeHistoryPage();
    QWidget *makePhotosPage();
    QWidget *makeDevicePage();
    QWidget *makeStoragePage();
    QStringList storagePath() const;

    void open(const std::vector<FileItem> &items);
    void askBeforeStarting(const FileItem &item);
    void askToStart(const Location &program);
    void openNow(const Location &entry);
    void say(const QString &message);
    /// Shows a failure in the active pane's banner, or below the page that covers it.
    void fail(const QString &message);
    void showMenu(const QPoint &global);
    void chooseApplication(const Location &entry);
    void makeDefault(const QString &mimeType, const QString &application);
    void askToUnpack(const Location &archive);
    void addTemplateMenu(QMenu &menu);
    void addOpenWithMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addSendToMenu(QMenu &menu);
    void addSendToChanges(QMenu &menu);
    void addUndoList(QMenu &menu);
    void addCommand(QMenu &menu, CommandId id);
    void addOtherPane(QMenu &menu, const std::vector<CommandId> &commands);
    void addPinEntry(QMenu &menu, const Location &folder);
    void addTagMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addColorMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addSizeEntry(QMenu &menu, const std::vector<FileItem> &items);
    void toggleTag(const QString &tag);
    void removeTags();
    void change(std::function<Result<void>(const std::vector<Location> &)> work);
    QMenu *showAllCommands(QWidget *under);
    QString titleWithKey(CommandId id) const;
    void showKeys();

    WindowServices m_services;
    std::map<CommandId, QAction *> m_actions;
    Toolbar *m_toolbar = nullptr;
    AddressBar *m_address = nullptr;
    SearchField *m_search = nullptr;
    QSplitter *m_body = nullptr;
    std::unique_ptr<FolderTree> m_tree;
    SidebarView *m_sidebar = nullptr;
    QStackedWidget *m_places = nullptr;
    PageMessage *m_message = nullptr;
    QSplitter *m_middle = nullptr;
    TabBar *m_tabs = nullptr;
    QStackedWidget *m_tabPages = nullptr; ///< same order as the tabs
    /// The tabs closed last, newest last, with the index they had.
    std::vector<std::pair<int, StoredTab>> m_closedTabs;
    PreviewSide *m_preview = nullptr;
    LargeViewing *m_large = nullptr; ///< created on first use
    StatusBar *m_status = nullptr;
    FileCommands *m_files = nullptr;
    std::unique_ptr<StorageOverview> m_storage;
    TransferPanel *m_transfers = nullptr;
    DoneCard *m_done = nullptr;
    std::map<Place::Kind, QWidget *> m_pages; ///< created on first use
    AgentView *m_agent = nullptr;
    std::unique_ptr<QObject> m_following; ///< observes the active pane
    bool m_mayClose = false;              ///< the user agreed to close
    QPointer<YesNoSheet> m_closeQuestion;
    bool m_clipboardHasFiles = false;
    std::set<Location> m_cut; ///< on the clipboard, for a move
    FileCall<std::vector<Location>> m_templates;
    Location m_deletableIn;   ///< the folder that `m_deletable` was asked for
    bool m_deletable = false; ///< entries there can be deleted permanently
    int m_previewWidth;
};

/// Setting: whether new windows show the preview.
inline const QString showPreviewKey = QStringLiteral("showPreview");

} // namespace brellin

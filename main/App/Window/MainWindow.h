#pragma once

#include "App/Window/TabPage.h"
#include "App/Window/Toolbar.h"
#include "App/Window/WindowMemory.h"

#include <QPointer>
#include <QStackedWidget>

#include <functional>
#include <map>

class QMenu;

namespace brellin {

class AgentView;
class FileCommands;
class FolderTree;
class NetworkPage;
class PreviewSide;
class SidebarView;
class StorageOverview;
class StatusBar;
class TabBar;
class TransferPanel;
class TrashPage;
class YesNoSheet;

/// A window of the file manager: toolbar, sidebar, tabs with their panes, preview and status line, and the pages that stand
/// in their place. It assembles and passes on; what happens is decided by the models.
class MainWindow : public QWidget {
    Q_OBJECT
public:
    MainWindow(const WindowServices &services, const StoredWindow &from);
    ~MainWindow() override;

    StoredWindow stored() const;
    void addTab(const Location &folder);
    /// Shows an entry: its folder in a new tab, the entry selected.
    void showEntry(const Location &entry);
    /// Carries the command's row of the table out, unless a sheet is open.
    void run(CommandId id);
    CommandState state() const;

    // What commands of the table do with the window itself.
    void newTab();
    void newWindow();
    void closeCurrentTab();
    void nextTab();
    void previousTab();
    void openSelection();
    /// The selected folders.
    void openInNewTabs();
    /// From a page to what it covers, from one of its own pages to its first; else along the history.
    void goBack();
    void goHome();
    void goToDownloads();
    void goToTrash();
    void editPath();
    void focusSearch();
    void togglePin();
    void toggleDualPane();
    void switchPane();
    void togglePreview();
    void toggleSidebar();
    void showSettings();

    /// Whether the program may end now. Where it is still at work, asks, and wants to quit once more after a yes.
    bool mayQuit();
    /// Closes without a question, which has been asked elsewhere.
    void closeUnasked();

    Q_SIGNAL void newWindowRequested(const brellin::Location &folder);
    Q_SIGNAL void quitRequested();
    /// Something that comes back at the next start has changed.
    Q_SIGNAL void changed();
    Q_SIGNAL void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What stands where the panes are, and its words in the address bar; none where the panes are shown.
    struct Page {
        QWidget *widget = nullptr;
        QStringList words;
    };

    void buildActions();
    void buildBody(const StoredWindow &from);
    QWidget *buildPanes();
    void buildFileCommands();
    void takeDropsOnTabs();
    void takeDropsOnSidebar();
    void drop(const DroppedFiles &files, BrowserModel *onto);
    void openFromStorage(const Location &entry);
    void placePanel();
    bool isLastWindow() const;
    bool wouldCutShort() const;
    void askToClose(const std::function<void()> &agreed);
    void placeAt(const std::vector<int> &frame);
    TabPage *makeTab(const TabTarget &target, const std::optional<Location> &second);
    void closeTab(int index);

    TabPage *tab() const;
    BrowserModel *pane() const;
    void follow();
    void showTitles();
    void showBadge(int number);
    void choose(const SidebarItem &item);
    void ensureTrash();
    void goToPageStep(int step);
    void showPreview(bool shown);
    void previewSelection();
    void showPlace();
    void refreshState();
    void followClipboard();
    bool hasSheet() const;
    const Place &place() const;
    Page pageOf(const Place &shown);
    QWidget *made(Place::Kind kind, QWidget *(MainWindow::*make)());
    QWidget *makeAgentPage();
    QWidget *makeNetworkPage();
    QWidget *makeTrashPage();
    QWidget *makePhotosPage();
    QWidget *makeDevicePage();
    QWidget *makeStoragePage();
    QStringList storagePath() const;

    void open(const std::vector<FileItem> &items);
    void askBeforeStarting(const FileItem &item);
    void askToStart(const Location &program);
    void openNow(const Location &entry);
    void say(const QString &message);
    void showMenu(const QPoint &global);
    void addOpenWithMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addSendToMenu(QMenu &menu);
    void addSendToChanges(QMenu &menu);
    void addUndoList(QMenu &menu);
    void addPinEntry(QMenu &menu, const Location &folder);
    void addTagMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addColorMenu(QMenu &menu, const std::vector<FileItem> &items);
    void addSizeEntry(QMenu &menu, const std::vector<FileItem> &items);
    void toggleTag(const QString &tag);
    void removeTags();
    void change(std::function<Result<void>(const std::vector<Location> &)> work);
    void showAllCommands(QWidget *under);

    WindowServices m_services;
    std::map<CommandId, QAction *> m_actions;
    Toolbar *m_toolbar = nullptr;
    AddressBar *m_address = nullptr;
    SearchField *m_search = nullptr;
    QSplitter *m_body = nullptr;
    std::unique_ptr<FolderTree> m_tree;
    SidebarView *m_sidebar = nullptr;
    QStackedWidget *m_places = nullptr;
    QSplitter *m_middle = nullptr;
    TabBar *m_tabs = nullptr;
    QStackedWidget *m_tabPages = nullptr; ///< in the order of the tabs
    PreviewSide *m_preview = nullptr;
    StatusBar *m_status = nullptr;
    FileCommands *m_files = nullptr;
    std::unique_ptr<StorageOverview> m_storage;
    TransferPanel *m_transfers = nullptr;
    std::map<Place::Kind, QWidget *> m_pages; ///< made when they are first shown
    AgentView *m_agent = nullptr;
    std::unique_ptr<QObject> m_following; ///< of the active pane
    bool m_mayClose = false;              ///< the user has said so
    QPointer<YesNoSheet> m_closeQuestion;
    bool m_clipboardHasFiles = false;
    int m_previewWidth;
};

/// The user default that says whether windows begin with the preview.
inline const QString showPreviewKey = QStringLiteral("showPreview");

} // namespace brellin

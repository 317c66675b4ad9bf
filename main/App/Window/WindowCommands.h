#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace brellin {

Q_NAMESPACE

class BrowserModel;
class FileCommands;
class MainWindow;

/// All commands of menus, toolbar and shortcuts. Stored shortcuts contain the names.
enum class CommandId {
    NewTab,
    NewWindow,
    CloseTab,
    CloseOtherTabs,
    DuplicateTab,
    ReopenTab,
    NextTab,
    PreviousTab,
    NewFolder,
    NewTextDocument,
    Open,
    OpenInNewTab,
    LargeView,
    ShowInFolder,
    Rename,
    MoveToTrash,
    DeleteForGood,
    Properties,
    Undo,
    Redo,
    Cut,
    Copy,
    Paste,
    Duplicate,
    CopyTo,
    MoveTo,
    CopyPath,
    Compress,
    Unpack,
    MakeAlias,
    OpenTerminal,
    EmptyTrash,
    StorageOverview,
    SelectAll,
    Back,
    Forward,
    Up,
    Reload,
    Home,
    Downloads,
    Photos,
    Trash,
    Agent,
    History,
    EditPath,
    Search,
    SearchContents,
    ShowHidden,
    Details,
    Icons,
    LargerIcons,
    SmallerIcons,
    Arrange,
    DualPane,
    OtherPane,
    CopyToOther,
    MoveToOther,
    SwapPanes,
    SameFolder,
    Preview,
    Sidebar,
    Pin,
    Settings,
    Shortcuts,
    AllCommands,
    About,
    Quit
};
Q_ENUM_NS(CommandId)

/// The menu that lists the command.
enum class CommandGroup { File, Edit, Go, View };
/// „Bearbeiten“
QString titleOf(CommandGroup group);

/// What `enabled` and `checked` depend on; captured when a menu opens and whenever something in it changes.
struct CommandState {
    BrowserModel *pane = nullptr; ///< the active pane
    bool page = false;            ///< the pane shows a page without folder entries: agent, photos, network, Trash …
    bool agent = false;           ///< that page is the agent's
    bool results = false;         ///< of a search or tag
    bool manyTabs = false;
    bool closedTabs = false; ///< a closed tab can be opened again
    bool dualPane = false;
    bool preview = false;
    bool sidebar = true;
    bool selected = false;       ///< something is selected in the folder
    bool onlyFolders = false;    ///< and it is all folders
    bool archive = false;        ///< and it is a single archive that can be unpacked
    bool deletable = false;      ///< and can be deleted permanently: it is in a Trash, or its volume has none
    bool clipboard = false;      ///< the clipboard holds files
    std::optional<QString> undo; ///< title of the next undo
    std::optional<QString> redo; ///< title of the next redo
};

/// Whether the shortcut works while an editable field has the focus, or is left to the field.
enum class WhileEditing { LeavesKeys, Works };

/// The objects that a command acts on.
struct CommandTarget {
    MainWindow &window;
    FileCommands &files; ///< of this window
    BrowserModel &pane;  ///< the active pane
};

/// One command: title, shortcuts, when it is enabled and checked, and what it runs.
struct WindowCommand {
    CommandId id;
    CommandGroup group;
    QString title;
    std::vector<QKeySequence> keys; ///< unless the user has chosen own ones; menus show the first
    WhileEditing editing = WhileEditing::LeavesKeys;
    std::function<bool(const CommandState &)> enabled;
    std::function<void(const CommandTarget &)> run;
    std::function<bool(const CommandState &)> checked; ///< empty if not checkable
};

/// The source of all menus, the toolbar and shortcuts.
const std::vector<WindowCommand> &commandTable();
const WindowCommand &windowCommand(CommandId id);

/// The shortcut in German, e.g. "Strg+T".
QString keyText(const QKeySequence &key);

} // namespace brellin

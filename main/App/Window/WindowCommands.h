#pragma once

#include <QKeySequence>
#include <QString>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace brellin {

class BrowserModel;
class FileCommands;
class MainWindow;

/// Everything that a menu, a tool button or a key can ask for.
enum class CommandId {
    NewTab,
    NewWindow,
    CloseTab,
    NextTab,
    PreviousTab,
    NewFolder,
    NewTextDocument,
    Open,
    OpenInNewTab,
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
    EditPath,
    Search,
    ShowHidden,
    Details,
    Icons,
    LargerIcons,
    SmallerIcons,
    DualPane,
    OtherPane,
    Preview,
    Sidebar,
    Pin,
    Settings,
    Quit
};

/// The menu that a command stands in.
enum class CommandGroup { File, Edit, Go, View };

/// What commands depend on, taken when a menu opens and whenever it changes.
struct CommandState {
    BrowserModel *pane = nullptr; ///< the active one
    bool page = false;            ///< a page stands in place of the folder: the agent, photos, the network
    bool agent = false;           ///< that page is the agent's
    bool manyTabs = false;
    bool dualPane = false;
    bool preview = false;
    bool sidebar = true;
    bool selected = false;       ///< something is selected in the folder
    bool onlyFolders = false;    ///< and that is folders
    bool archive = false;        ///< and that is one archive that can be unpacked
    bool clipboard = false;      ///< files lie on the clipboard
    std::optional<QString> undo; ///< what can be taken back, as the command says it
    std::optional<QString> redo; ///< and what of it be done again
};

/// Whether a command works while an editable field has the focus, or leaves its keys to the field.
enum class WhileEditing { LeavesKeys, Works };

/// What a command acts on.
struct CommandTarget {
    MainWindow &window;
    FileCommands &files; ///< of this window
    BrowserModel &pane;  ///< the active one
};

/// One command: what it is called, how it is typed, when it applies, what it does and what shows it as switched on.
struct WindowCommand {
    CommandId id;
    CommandGroup group;
    QString title;
    std::vector<QKeySequence> keys; ///< the first one is shown
    WhileEditing editing = WhileEditing::LeavesKeys;
    std::function<bool(const CommandState &)> enabled;
    std::function<void(const CommandTarget &)> run;
    std::function<bool(const CommandState &)> checked; ///< empty: nothing to switch
};

/// The table that menus, the toolbar and keys are made from.
const std::vector<WindowCommand> &commandTable();
const WindowCommand &windowCommand(CommandId id);

/// "Strg+T": as it stands on a German keyboard.
QString keyText(const QKeySequence &key);

} // namespace brellin

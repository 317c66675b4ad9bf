#include "App/Window/CommandLook.h"

#include <map>
#include <set>

namespace brellin {

QString symbolOf(CommandId id)
{
    using enum CommandId;
    static const std::map<CommandId, const char *> names{{NewTab, "square-plus"},
                                                         {NewWindow, "app-window"},
                                                         {CloseTab, "x"},
                                                         {CloseOtherTabs, "circle-x"},
                                                         {DuplicateTab, "copy"},
                                                         {ReopenTab, "undo-2"},
                                                         {NextTab, "chevron-right"},
                                                         {PreviousTab, "chevron-left"},
                                                         {NewFolder, "folder-plus"},
                                                         {NewTextDocument, "file-text"},
                                                         {Open, "external-link"},
                                                         {OpenInNewTab, "square-plus"},
                                                         {CommandId::LargeView, "maximize-2"},
                                                         {ShowInFolder, "folder-open"},
                                                         {Rename, "pencil"},
                                                         {MoveToTrash, "trash-2"},
                                                         {DeleteForGood, "circle-alert"},
                                                         {Properties, "info"},
                                                         {Undo, "undo-2"},
                                                         {Redo, "redo-2"},
                                                         {Cut, "scissors"},
                                                         {Copy, "copy"},
                                                         {Paste, "clipboard-paste"},
                                                         {Duplicate, "files"},
                                                         {CopyTo, "folder-input"},
                                                         {MoveTo, "folder-output"},
                                                         {CopyPath, "link"},
                                                         {Compress, "file-archive"},
                                                         {Unpack, "package"},
                                                         {MakeAlias, "folder-symlink"},
                                                         {OpenTerminal, "terminal"},
                                                         {EmptyTrash, "trash"},
                                                         {StorageOverview, "chart-pie"},
                                                         {SelectAll, "list-checks"},
                                                         {Back, "arrow-left"},
                                                         {Forward, "arrow-right"},
                                                         {Up, "arrow-up"},
                                                         {Reload, "rotate-cw"},
                                                         {Home, "house"},
                                                         {Downloads, "download"},
                                                         {Photos, "images"},
                                                         {Trash, "trash-2"},
                                                         {Agent, "wand-sparkles"},
                                                         {History, "history"},
                                                         {EditPath, "text-cursor-input"},
                                                         {Search, "search"},
                                                         {ShowHidden, "eye"},
                                                         {LargerIcons, "zoom-in"},
                                                         {SmallerIcons, "zoom-out"},
                                                         {Arrange, "arrow-down-up"},
                                                         {OtherPane, "arrow-right-left"},
                                                         {CopyToOther, "copy"},
                                                         {MoveToOther, "folder-output"},
                                                         {SwapPanes, "arrow-right-left"},
                                                         {SameFolder, "columns-2"},
                                                         {Pin, "pin"},
                                                         {Settings, "settings"},
                                                         {Shortcuts, "case-sensitive"}};
    return QString::fromLatin1(names.contains(id) ? names.at(id) : "");
}

bool beginsSection(CommandId id)
{
    using enum CommandId;
    static const std::set<CommandId> first{NewFolder, Open,    Rename,      MoveToTrash, OpenTerminal, Settings,
                                           Quit,      Cut,     CopyTo,      SelectAll,   Search,       Home,
                                           NextTab,   Arrange, LargerIcons, ShowHidden,  DualPane};
    return first.contains(id);
}

} // namespace brellin

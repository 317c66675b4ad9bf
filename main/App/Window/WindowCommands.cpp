#include "App/Window/WindowCommands.h"

#include "App/Window/FileCommands.h"
#include "App/Window/MainWindow.h"
#include "Base/Edition.h"

#include <algorithm>

namespace brellin {

namespace {

using State = CommandState;
using Test = std::function<bool(const State &)>;
constexpr auto works = WhileEditing::Works;
constexpr auto leaves = WhileEditing::LeavesKeys;

bool always(const State &)
{
    return true;
}
/// Whether a folder is shown, not a page.
bool inFolder(const State &state)
{
    return state.pane && !state.page;
}
bool withSelection(const State &state)
{
    return inFolder(state) && state.selected;
}
bool withDeletable(const State &state)
{
    return withSelection(state) && state.deletable;
}
bool withFolders(const State &state)
{
    return inFolder(state) && state.onlyFolders;
}
bool withResult(const State &state)
{
    return inFolder(state) && state.results && state.pane->onlySelected();
}
bool withArchive(const State &state)
{
    return inFolder(state) && state.archive;
}
bool withManyTabs(const State &state)
{
    return state.manyTabs;
}
bool withClosedTabs(const State &state)
{
    return state.closedTabs;
}
bool withBack(const State &state)
{
    return state.agent || (state.pane && state.pane->canGoBack.get());
}
bool withForward(const State &state)
{
    return state.pane && state.pane->canGoForward.get();
}
bool withParent(const State &state)
{
    return inFolder(state) && state.pane->current.get() != state.pane->current.get().parent_path();
}
bool withUndo(const State &state)
{
    return state.undo.has_value();
}
bool withRedo(const State &state)
{
    return state.redo.has_value();
}
bool withClipboard(const State &state)
{
    return inFolder(state) && state.clipboard;
}
bool withTwoPanes(const State &state)
{
    return inFolder(state) && state.dualPane;
}
/// Whether the other pane shows a folder that the selected entries are not in. Results come from anywhere.
bool withOtherFolder(const State &state)
{
    if (!withSelection(state) || !state.pane->partner)
        return false;
    const Place &other = state.pane->partner->place.get();
    return other.kind == Place::Kind::Folder && (state.results || other.location != state.pane->current.get());
}
bool withFolderForOther(const State &state)
{
    if (!withTwoPanes(state) || !state.pane->partner || state.pane->place.get().kind != Place::Kind::Folder)
        return false;
    return state.pane->partner->place.get() != state.pane->place.get();
}
bool asList(const State &state)
{
    return inFolder(state) && state.pane->viewMode.get() == ViewMode::Details;
}
bool asIcons(const State &state)
{
    return inFolder(state) && state.pane->viewMode.get() == ViewMode::Icons;
}
bool withHidden(const State &state)
{
    return inFolder(state) && state.pane->showHidden.get();
}

using Run = std::function<void(const CommandTarget &)>;
/// Points per step of the icon size.
constexpr double iconStep = 16;

Run run(void (MainWindow::*act)())
{
    return [act](const CommandTarget &on) { (on.window.*act)(); };
}
Run run(void (BrowserModel::*act)())
{
    return [act](const CommandTarget &on) { (on.pane.*act)(); };
}
Run run(void (FileCommands::*act)())
{
    return [act](const CommandTarget &on) { (on.files.*act)(); };
}
/// A command on the active pane, usually on its selection.
Run run(void (FileCommands::*act)(BrowserModel &))
{
    return [act](const CommandTarget &on) { (on.files.*act)(on.pane); };
}
Run showPage(const Place &page)
{
    return [page](const CommandTarget &on) { on.pane.showPlace(page); };
}
Run showAs(ViewMode mode)
{
    return [mode](const CommandTarget &on) { on.pane.setViewMode(mode); };
}
Run zoomBy(double points)
{
    return [points](const CommandTarget &on) { on.pane.zoomIcons(points); };
}

constexpr int control = Qt::CTRL;
constexpr int shift = Qt::SHIFT;
constexpr int alt = Qt::ALT;

/// Collects the rows of one menu, in order.
class Menu {
public:
    explicit Menu(CommandGroup group) : m_group(group) {}

    void add(CommandId id, const QString &title, std::initializer_list<int> keys, WhileEditing editing, Test enabled,
             Run run, Test checked = {})
    {
        WindowCommand made{id, m_group, title, {}, editing, std::move(enabled), std::move(run), std::move(checked)};
        for (const int key : keys)
            made.keys.emplace_back(key);
        commands.push_back(std::move(made));
    }

    std::vector<WindowCommand> commands;

private:
    CommandGroup m_group;
};

std::vector<WindowCommand> fileMenu()
{
    using enum CommandId;
    Menu menu(CommandGroup::File);
    menu.add(NewTab, QStringLiteral("Neuer Tab"), {control | Qt::Key_T}, works, always, run(&MainWindow::newTab));
    menu.add(NewWindow, QStringLiteral("Neues Fenster"), {control | Qt::Key_N}, works, always,
             run(&MainWindow::newWindow));
    menu.add(CloseTab, QStringLiteral("Tab schließen"), {control | Qt::Key_W}, works, always,
             run(&MainWindow::closeCurrentTab));
    menu.add(CloseOtherTabs, QStringLiteral("Andere Tabs schließen"), {}, works, withManyTabs,
             run(&MainWindow::closeOthers));
    menu.add(DuplicateTab, QStringLiteral("Tab duplizieren"), {}, works, always, run(&MainWindow::duplicateCurrentTab));
    menu.add(ReopenTab, QStringLiteral("Geschlossenen Tab wieder öffnen"), {control | shift | Qt::Key_T}, works,
             withClosedTabs, run(&MainWindow::reopenTab));
    menu.add(NewFolder, QStringLiteral("Neuer Ordner"), {control | shift | Qt::Key_N}, leaves, inFolder,
             run(&BrowserModel::newFolder));
    menu.add(NewTextDocument, QStringLiteral("Neues Textdokument"), {}, leaves, inFolder,
             run(&FileCommands::newTextDocument));
    menu.add(Open, QStringLiteral("Öffnen"), {control | Qt::Key_Down}, leaves, withSelection,
             run(&MainWindow::openSelection));
    menu.add(OpenInNewTab, QStringLiteral("In neuem Tab öffnen"), {control | Qt::Key_Return}, leaves, withFolders,
             run(&MainWindow::openInNewTabs));
    menu.add(LargeView, QStringLiteral("Große Ansicht"), {Qt::Key_Space}, leaves, inFolder,
             run(&MainWindow::showLarge));
    menu.add(ShowInFolder, QStringLiteral("Im Ordner zeigen"), {}, leaves, withResult, run(&MainWindow::showInFolder));
    menu.add(Rename, QStringLiteral("Umbenennen"), {Qt::Key_F2}, leaves, withSelection,
             run(&BrowserModel::beginRenameSelection));
    menu.add(Compress, QStringLiteral("Als ZIP komprimieren"), {}, leaves, withSelection, run(&FileCommands::compress));
    menu.add(Unpack, QStringLiteral("Entpacken"), {}, leaves, withArchive, run(&FileCommands::unpack));
    menu.add(MakeAlias, QStringLiteral("Verknüpfung erstellen"), {}, leaves, withSelection,
             run(&FileCommands::makeAlias));
    menu.add(MoveToTrash, QStringLiteral("In den Papierkorb legen"), {Qt::Key_Delete, control | Qt::Key_Backspace},
             leaves, withSelection, run(&FileCommands::moveToTrash));
    menu.add(DeleteForGood, QStringLiteral("Endgültig löschen …"), {shift | Qt::Key_Delete}, leaves, withDeletable,
             run(&FileCommands::deleteForGood));
    menu.add(EmptyTrash, QStringLiteral("Papierkorb leeren …"), {}, works, always, run(&MainWindow::emptyTrash));
    menu.add(OpenTerminal, QStringLiteral("Terminal hier öffnen"), {Qt::Key_F4}, leaves, inFolder,
             run(&FileCommands::openTerminal));
    menu.add(StorageOverview, QStringLiteral("Speicherplatz …"), {}, leaves, inFolder,
             [](const CommandTarget &on) { on.pane.showPlace(Place::storage(on.pane.current.get())); });
    menu.add(Properties, QStringLiteral("Eigenschaften"), {alt | Qt::Key_Return, control | Qt::Key_I}, leaves, inFolder,
             run(&FileCommands::showPropertiesOfSelection));
    menu.add(Settings, QStringLiteral("Einstellungen …"), {control | Qt::Key_Comma}, works, always,
             run(&MainWindow::showSettings));
    menu.add(CommandId::Shortcuts, QStringLiteral("Tastenkürzel …"), {Qt::Key_F1}, works, always,
             run(&MainWindow::showShortcuts));
    menu.add(About, QStringLiteral("Über %1 …").arg(Edition::name()), {}, works, always, run(&MainWindow::showAbout));
    menu.add(AllCommands, QStringLiteral("Alle Befehle"), {Qt::Key_F10}, works, always, run(&MainWindow::openMenu));
    menu.add(Quit, QStringLiteral("Beenden"), {control | Qt::Key_Q}, works, always, run(&MainWindow::quitRequested));
    return menu.commands;
}

std::vector<WindowCommand> editMenu()
{
    using enum CommandId;
    Menu menu(CommandGroup::Edit);
    menu.add(Undo, QStringLiteral("Rückgängig"), {control | Qt::Key_Z}, leaves, withUndo, run(&FileCommands::undo));
    menu.add(Redo, QStringLiteral("Wiederholen"), {control | shift | Qt::Key_Z, control | Qt::Key_Y}, leaves, withRedo,
             run(&FileCommands::redo));
    menu.add(Cut, QStringLiteral("Ausschneiden"), {control | Qt::Key_X}, leaves, withSelection,
             run(&FileCommands::cut));
    menu.add(Copy, QStringLiteral("Kopieren"), {control | Qt::Key_C}, leaves, withSelection, run(&FileCommands::copy));
    menu.add(Paste, QStringLiteral("Einfügen"), {control | Qt::Key_V}, leaves, withClipboard,
             run(&FileCommands::paste));
    menu.add(Duplicate, QStringLiteral("Duplizieren"), {control | Qt::Key_D}, leaves, withSelection,
             run(&FileCommands::duplicate));
    menu.add(CopyTo, QStringLiteral("Kopieren nach …"), {}, leaves, withSelection, run(&FileCommands::copyTo));
    menu.add(MoveTo, QStringLiteral("Verschieben nach …"), {}, leaves, withSelection, run(&FileCommands::moveTo));
    menu.add(CopyToOther, QStringLiteral("In den anderen Ordner kopieren"), {shift | Qt::Key_F5}, leaves,
             withOtherFolder, run(&FileCommands::copyToOther));
    menu.add(MoveToOther, QStringLiteral("In den anderen Ordner verschieben"), {shift | Qt::Key_F6}, leaves,
             withOtherFolder, run(&FileCommands::moveToOther));
    menu.add(SelectAll, QStringLiteral("Alles auswählen"), {control | Qt::Key_A}, leaves, inFolder,
             run(&BrowserModel::selectAll));
    menu.add(CopyPath, QStringLiteral("Pfad kopieren"), {control | alt | Qt::Key_C}, leaves, withSelection,
             run(&FileCommands::copyPath));
    menu.add(Search, QStringLiteral("Suchen"), {control | Qt::Key_F}, works, inFolder, run(&MainWindow::focusSearch));
    menu.add(SearchContents, QStringLiteral("In Inhalten suchen"), {control | shift | Qt::Key_F}, works, inFolder,
             run(&MainWindow::searchContents));
    menu.add(EditPath, QStringLiteral("Pfad eingeben"), {control | Qt::Key_L}, works, always,
             run(&MainWindow::editPath));
    menu.add(Pin, QStringLiteral("Ordner an Schnellzugriff anheften"), {}, leaves, inFolder,
             run(&MainWindow::togglePin));
    return menu.commands;
}

std::vector<WindowCommand> goMenu()
{
    using enum CommandId;
    Menu menu(CommandGroup::Go);
    menu.add(Back, QStringLiteral("Zurück"), {alt | Qt::Key_Left, control | Qt::Key_BracketLeft, Qt::Key_Back}, leaves,
             withBack, run(&MainWindow::goBack));
    menu.add(Forward, QStringLiteral("Vorwärts"),
             {alt | Qt::Key_Right, control | Qt::Key_BracketRight, Qt::Key_Forward}, leaves, withForward,
             run(&BrowserModel::goForward));
    menu.add(Up, QStringLiteral("Übergeordneter Ordner"), {control | Qt::Key_Up, alt | Qt::Key_Up, Qt::Key_Backspace},
             leaves, withParent, run(&BrowserModel::goUp));
    menu.add(Reload, QStringLiteral("Aktualisieren"), {control | Qt::Key_R, Qt::Key_F5}, works, inFolder,
             run(&MainWindow::reload));
    menu.add(Home, QStringLiteral("Benutzerordner"), {control | shift | Qt::Key_H}, works, always,
             run(&MainWindow::goHome));
    menu.add(Downloads, QStringLiteral("Downloads"), {control | alt | Qt::Key_L}, works, always,
             run(&MainWindow::goToDownloads));
    menu.add(Photos, QStringLiteral("Fotos-Mediathek"), {control | shift | Qt::Key_P}, works, always,
             showPage(Place::photos()));
    menu.add(CommandId::Trash, QStringLiteral("Papierkorb"), {}, works, always, run(&MainWindow::goToTrash));
    menu.add(CommandId::Agent, QStringLiteral("Aufräum-Agent"), {control | shift | Qt::Key_K}, works, always,
             showPage(Place::agent()), [](const State &state) { return state.agent; });
    menu.add(CommandId::History, QStringLiteral("Verlauf"), {control | alt | Qt::Key_H}, works, always,
             showPage(Place::history()));
    menu.add(NextTab, QStringLiteral("Nächster Tab"), {control | Qt::Key_PageDown, control | Qt::Key_Tab}, works,
             withManyTabs, run(&MainWindow::nextTab));
    menu.add(PreviousTab, QStringLiteral("Vorheriger Tab"),
             {control | Qt::Key_PageUp, control | shift | Qt::Key_Backtab}, works, withManyTabs,
             run(&MainWindow::previousTab));
    return menu.commands;
}

std::vector<WindowCommand> viewMenu()
{
    using enum CommandId;
    Menu menu(CommandGroup::View);
    menu.add(Details, QStringLiteral("Als Liste"), {control | Qt::Key_1}, leaves, inFolder, showAs(ViewMode::Details),
             asList);
    menu.add(Icons, QStringLiteral("Als Symbole"), {control | Qt::Key_2}, leaves, inFolder, showAs(ViewMode::Icons),
             asIcons);
    menu.add(LargerIcons, QStringLiteral("Größere Symbole"), {control | Qt::Key_Plus, control | Qt::Key_Equal}, leaves,
             inFolder, zoomBy(iconStep));
    menu.add(SmallerIcons, QStringLiteral("Kleinere Symbole"), {control | Qt::Key_Minus}, leaves, inFolder,
             zoomBy(-iconStep));
    menu.add(Arrange, QStringLiteral("Spalten und Sortierung …"), {control | alt | Qt::Key_S}, leaves, inFolder,
             run(&MainWindow::showArrangement));
    menu.add(
        ShowHidden, QStringLiteral("Versteckte Dateien ein/aus"),
        {control | Qt::Key_H, control | shift | Qt::Key_Period}, leaves, inFolder,
        [](const CommandTarget &on) { on.pane.setShowHidden(!on.pane.showHidden.get()); }, withHidden);
    menu.add(DualPane, QStringLiteral("Zwei Ordner nebeneinander"), {Qt::Key_F3}, works, always,
             run(&MainWindow::toggleDualPane), [](const State &state) { return state.dualPane; });
    menu.add(OtherPane, QStringLiteral("Zum anderen Ordner wechseln"), {Qt::Key_F6}, leaves, withTwoPanes,
             run(&MainWindow::switchPane));
    menu.add(SwapPanes, QStringLiteral("Ordner tauschen"), {control | Qt::Key_U}, leaves, withTwoPanes,
             run(&MainWindow::swapPanes));
    menu.add(SameFolder, QStringLiteral("Gleicher Ordner drüben"), {control | Qt::Key_G}, leaves, withFolderForOther,
             [](const CommandTarget &on) { on.pane.partner->navigate(on.pane.current.get()); });
    menu.add(Preview, QStringLiteral("Vorschaufenster ein/aus"), {control | alt | Qt::Key_P, Qt::Key_F11}, works,
             inFolder, run(&MainWindow::togglePreview), [](const State &state) { return state.preview; });
    menu.add(Sidebar, QStringLiteral("Seitenleiste"), {Qt::Key_F9}, works, always, run(&MainWindow::toggleSidebar),
             [](const State &state) { return state.sidebar; });
    return menu.commands;
}

} // namespace

const std::vector<WindowCommand> &commandTable()
{
    static const std::vector<WindowCommand> table = [] {
        std::vector<WindowCommand> all;
        for (std::vector<WindowCommand> menu : {fileMenu(), editMenu(), goMenu(), viewMenu()})
            std::ranges::move(menu, std::back_inserter(all));
        return all;
    }();
    return table;
}

const WindowCommand &windowCommand(CommandId id)
{
    return *std::ranges::find(commandTable(), id, &WindowCommand::id);
}

QString titleOf(CommandGroup group)
{
    switch (group) {
    case CommandGroup::File:
        return QStringLiteral("Ablage");
    case CommandGroup::Edit:
        return QStringLiteral("Bearbeiten");
    case CommandGroup::Go:
        return QStringLiteral("Gehe zu");
    case CommandGroup::View:
        return QStringLiteral("Darstellung");
    }
    return {};
}

QString keyText(const QKeySequence &key)
{
    static const std::array<std::pair<QString, QString>, 18> words{
        {{QStringLiteral("Ctrl"), QStringLiteral("Strg")},
         {QStringLiteral("Shift"), QStringLiteral("Umschalt")},
         {QStringLiteral("Return"), QStringLiteral("Eingabe")},
         {QStringLiteral("Backspace"), QStringLiteral("Rücktaste")},
         {QStringLiteral("Left"), QStringLiteral("←")},
         {QStringLiteral("Right"), QStringLiteral("→")},
         {QStringLiteral("Up"), QStringLiteral("↑")},
         {QStringLiteral("Down"), QStringLiteral("↓")},
         {QStringLiteral("Del"), QStringLiteral("Entf")},
         {QStringLiteral("Ins"), QStringLiteral("Einfg")},
         {QStringLiteral("PgUp"), QStringLiteral("Bild ↑")},
         {QStringLiteral("PgDown"), QStringLiteral("Bild ↓")},
         {QStringLiteral("Home"), QStringLiteral("Pos1")},
         {QStringLiteral("End"), QStringLiteral("Ende")},
         {QStringLiteral("Space"), QStringLiteral("Leertaste")},
         {QStringLiteral("Backtab"), QStringLiteral("Tab")},
         {QStringLiteral("Back"), QStringLiteral("Browser zurück")},
         {QStringLiteral("Forward"), QStringLiteral("Browser vor")}}};
    QStringList parts = key.toString(QKeySequence::PortableText).split(QLatin1Char('+'));
    for (QString &part : parts)
        for (const auto &[english, german] : words)
            if (part == english)
                part = german;
    return parts.join(QLatin1Char('+'));
}

} // namespace brellin

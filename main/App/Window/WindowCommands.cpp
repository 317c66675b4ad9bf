#include "App/Window/WindowCommands.h"

#include "ContentView/BrowserModel.h"

#include <algorithm>

namespace brellin {

namespace {

using State = CommandState;
using Keys = std::vector<QKeySequence>;

bool always(const State &)
{
    return true;
}
/// A folder is shown, and not a page in its place.
bool inFolder(const State &state)
{
    return state.pane && !state.page;
}
bool withSelection(const State &state)
{
    return inFolder(state) && !state.pane->selection.get().empty();
}
bool withManyTabs(const State &state)
{
    return state.manyTabs;
}

QKeySequence key(int combined)
{
    return QKeySequence(combined);
}

constexpr int control = Qt::CTRL;
constexpr int shift = Qt::SHIFT;
constexpr int alt = Qt::ALT;

std::vector<WindowCommand> fileCommands()
{
    using enum CommandId;
    constexpr CommandGroup group = CommandGroup::File;
    return {
        {NewTab, group, QStringLiteral("Neuer Tab"), {key(control | Qt::Key_T)}, WhileEditing::Works, always, {}},
        {NewWindow,
         group,
         QStringLiteral("Neues Fenster"),
         {key(control | Qt::Key_N)},
         WhileEditing::Works,
         always,
         {}},
        {CloseTab, group, QStringLiteral("Tab schließen"), {key(control | Qt::Key_W)}, WhileEditing::Works, always, {}},
        {NewFolder,
         group,
         QStringLiteral("Neuer Ordner"),
         {key(control | shift | Qt::Key_N)},
         WhileEditing::LeavesKeys,
         inFolder,
         {}},
        {Open,
         group,
         QStringLiteral("Öffnen"),
         {key(control | Qt::Key_Down), key(Qt::Key_Return)},
         WhileEditing::LeavesKeys,
         withSelection,
         {}},
        {OpenInNewTab,
         group,
         QStringLiteral("In neuem Tab öffnen"),
         {key(control | Qt::Key_Return)},
         WhileEditing::LeavesKeys,
         [](const State &state) {
             return withSelection(state) && std::ranges::all_of(state.pane->selectedItems(), &FileItem::isFolder);
         },
         {}},
        {Rename, group, QStringLiteral("Umbenennen"), {key(Qt::Key_F2)}, WhileEditing::LeavesKeys, withSelection, {}},
        {Settings,
         group,
         QStringLiteral("Einstellungen …"),
         {key(control | Qt::Key_Comma)},
         WhileEditing::Works,
         always,
         {}},
        {Quit, group, QStringLiteral("Beenden"), {key(control | Qt::Key_Q)}, WhileEditing::Works, always, {}},
    };
}

std::vector<WindowCommand> editCommands()
{
    using enum CommandId;
    constexpr CommandGroup group = CommandGroup::Edit;
    return {
        {SelectAll,
         group,
         QStringLiteral("Alles auswählen"),
         {key(control | Qt::Key_A)},
         WhileEditing::LeavesKeys,
         inFolder,
         {}},
        {Search, group, QStringLiteral("Suchen"), {key(control | Qt::Key_F)}, WhileEditing::Works, inFolder, {}},
        {EditPath,
         group,
         QStringLiteral("Pfad eingeben"),
         {key(control | Qt::Key_L)},
         WhileEditing::Works,
         inFolder,
         {}},
        {Pin, group, QStringLiteral("Ordner an Schnellzugriff anheften"), {}, WhileEditing::LeavesKeys, inFolder, {}},
    };
}

std::vector<WindowCommand> goCommands()
{
    using enum CommandId;
    constexpr CommandGroup group = CommandGroup::Go;
    return {
        {Back,
         group,
         QStringLiteral("Zurück"),
         {key(alt | Qt::Key_Left), key(control | Qt::Key_BracketLeft), key(Qt::Key_Back)},
         WhileEditing::LeavesKeys,
         [](const State &state) { return state.page || (state.pane && state.pane->canGoBack.get()); },
         {}},
        {Forward,
         group,
         QStringLiteral("Vorwärts"),
         {key(alt | Qt::Key_Right), key(control | Qt::Key_BracketRight), key(Qt::Key_Forward)},
         WhileEditing::LeavesKeys,
         [](const State &state) { return inFolder(state) && state.pane->canGoForward.get(); },
         {}},
        {Up,
         group,
         QStringLiteral("Übergeordneter Ordner"),
         {key(alt | Qt::Key_Up), key(control | Qt::Key_Up), key(Qt::Key_Backspace)},
         WhileEditing::LeavesKeys,
         [](const State &state) {
             return inFolder(state) && state.pane->current.get() != state.pane->current.get().parent_path();
         },
         {}},
        {Reload,
         group,
         QStringLiteral("Aktualisieren"),
         {key(Qt::Key_F5), key(control | Qt::Key_R)},
         WhileEditing::Works,
         inFolder,
         {}},
        {Home,
         group,
         QStringLiteral("Benutzerordner"),
         {key(control | shift | Qt::Key_H)},
         WhileEditing::Works,
         always,
         {}},
        {Downloads,
         group,
         QStringLiteral("Downloads"),
         {key(control | alt | Qt::Key_L)},
         WhileEditing::Works,
         always,
         {}},
        {Photos,
         group,
         QStringLiteral("Fotos-Mediathek"),
         {key(control | shift | Qt::Key_P)},
         WhileEditing::Works,
         always,
         {}},
        {Trash, group, QStringLiteral("Papierkorb"), {}, WhileEditing::Works, always, {}},
        {Agent,
         group,
         QStringLiteral("Aufräum-Agent"),
         {key(control | shift | Qt::Key_K)},
         WhileEditing::Works,
         always,
         [](const State &state) { return state.agent; }},
        {NextTab,
         group,
         QStringLiteral("Nächster Tab"),
         {key(control | Qt::Key_PageDown), key(control | Qt::Key_Tab)},
         WhileEditing::Works,
         withManyTabs,
         {}},
        {PreviousTab,
         group,
         QStringLiteral("Vorheriger Tab"),
         {key(control | Qt::Key_PageUp), key(control | shift | Qt::Key_Tab)},
         WhileEditing::Works,
         withManyTabs,
         {}},
    };
}

std::vector<WindowCommand> viewCommands()
{
    using enum CommandId;
    constexpr CommandGroup group = CommandGroup::View;
    return {
        {Details,
         group,
         QStringLiteral("Als Liste"),
         {key(control | Qt::Key_1)},
         WhileEditing::LeavesKeys,
         inFolder,
         [](const State &state) { return inFolder(state) && state.pane->viewMode.get() == ViewMode::Details; }},
        {Icons,
         group,
         QStringLiteral("Als Symbole"),
         {key(control | Qt::Key_2)},
         WhileEditing::LeavesKeys,
         inFolder,
         [](const State &state) { return inFolder(state) && state.pane->viewMode.get() == ViewMode::Icons; }},
        {LargerIcons,
         group,
         QStringLiteral("Symbole vergrößern"),
         {key(control | Qt::Key_Plus), key(control | Qt::Key_Equal)},
         WhileEditing::LeavesKeys,
         inFolder,
         {}},
        {SmallerIcons,
         group,
         QStringLiteral("Symbole verkleinern"),
         {key(control | Qt::Key_Minus)},
         WhileEditing::LeavesKeys,
         inFolder,
         {}},
        {ShowHidden,
         group,
         QStringLiteral("Versteckte Dateien ein/aus"),
         {key(control | Qt::Key_H), key(control | shift | Qt::Key_Period)},
         WhileEditing::LeavesKeys,
         inFolder,
         [](const State &state) { return inFolder(state) && state.pane->showHidden.get(); }},
        {DualPane,
         group,
         QStringLiteral("Zwei Ordner nebeneinander"),
         {key(Qt::Key_F3)},
         WhileEditing::Works,
         always,
         [](const State &state) { return state.dualPane; }},
        {OtherPane,
         group,
         QStringLiteral("Zum anderen Ordner wechseln"),
         {key(Qt::Key_F6)},
         WhileEditing::LeavesKeys,
         [](const State &state) { return inFolder(state) && state.dualPane; },
         {}},
        {Preview,
         group,
         QStringLiteral("Vorschaufenster"),
         {key(Qt::Key_F11), key(control | shift | Qt::Key_I)},
         WhileEditing::Works,
         inFolder,
         [](const State &state) { return state.preview; }},
        {Sidebar,
         group,
         QStringLiteral("Seitenleiste"),
         {key(Qt::Key_F9)},
         WhileEditing::Works,
         always,
         [](const State &state) { return state.sidebar; }},
    };
}

} // namespace

const std::vector<WindowCommand> &commandTable()
{
    static const std::vector<WindowCommand> table = [] {
        std::vector<WindowCommand> all;
        for (std::vector<WindowCommand> group : {fileCommands(), editCommands(), goCommands(), viewCommands()})
            std::ranges::move(group, std::back_inserter(all));
        return all;
    }();
    return table;
}

const WindowCommand &windowCommand(CommandId id)
{
    return *std::ranges::find(commandTable(), id, &WindowCommand::id);
}

QString keyText(const QKeySequence &key)
{
    static const std::array<std::pair<QString, QString>, 9> words{
        {{QStringLiteral("Ctrl"), QStringLiteral("Strg")},
         {QStringLiteral("Shift"), QStringLiteral("Umschalt")},
         {QStringLiteral("Return"), QStringLiteral("Eingabe")},
         {QStringLiteral("Backspace"), QStringLiteral("Rücktaste")},
         {QStringLiteral("Left"), QStringLiteral("←")},
         {QStringLiteral("Right"), QStringLiteral("→")},
         {QStringLiteral("Up"), QStringLiteral("↑")},
         {QStringLiteral("Down"), QStringLiteral("↓")},
         {QStringLiteral("Del"), QStringLiteral("Entf")}}};
    QStringList parts = key.toString(QKeySequence::PortableText).split(QLatin1Char('+'));
    for (QString &part : parts)
        for (const auto &[english, german] : words)
            if (part == english)
                part = german;
    return parts.join(QLatin1Char('+'));
}

} // namespace brellin

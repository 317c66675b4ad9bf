#include "App/Window/AboutTexts.h"
#include "App/Window/CommandLook.h"
#include "App/Window/FileCommands.h"
#include "App/Window/MainWindow.h"
#include "App/Window/PlaceTitles.h"
#include "App/Window/SettingsSheet.h"
#include "App/Window/ShortcutSheet.h"
#include "Base/Edition.h"
#include "Disk/FileTypes.h"
#include "Disk/OnWorker.h"
#include "Features/FileTags.h"
#include "Look/DetailsSheet.h"
#include "Look/Symbols.h"
#include "Look/TagSymbols.h"
#include "Look/Theme.h"
#include "Look/YesNoSheet.h"
#include "Places/TemplateFolder.h"
#include "SendTo/SendToTargets.h"
#include "Sidebar/Pins.h"
#include "System/ProgramFile.h"

#include <QMenu>
#include <QPointer>

#include <algorithm>

namespace brellin {

namespace {

QMenu *makeMenu(QWidget *parent, const QString &name)
{
    auto *const menu = new QMenu(parent);
    menu->setObjectName(name);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    return menu;
}

/// The user's templates by name. May block.
std::vector<Location> templatesOf(const Location &home)
{
    std::vector<Location> templates;
    const std::optional<Location> folder = templateFolder(home);
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder.value_or(Location()), error);
         folder && !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        const bool file = entry->symlink_status(unknown).type() == std::filesystem::file_type::regular;
        if (file && !isDotName(entry->path().filename().native()))
            templates.push_back(entry->path());
    }
    std::ranges::sort(templates, [](const Location &one, const Location &other) {
        return QString::localeAwareCompare(shownName(one), shownName(other)) < 0;
    });
    return templates;
}

/// What opening an entry does.
enum class Opening { Opens, Starts, Unpacks };

/// May block.
Opening openingOf(const Location &entry, const Workspace &workspace)
{
    if (isProgram(entry))
        return Opening::Starts;
    const QString type = fileTypeOf(extensionOf(entry.filename().native())).mimeName;
    const bool unopened = type == QStringLiteral("application/zip") && workspace.applicationsFor(type).empty();
    return unopened ? Opening::Unpacks : Opening::Opens;
}

} // namespace

void MainWindow::showMenu(const QPoint &global)
{
    refreshState();
    QMenu *const menu = makeMenu(this, QStringLiteral("contextMenu"));
    const std::vector<FileItem> selected = pane()->selectedItems();
    const auto add = [this, menu](CommandId id) { addCommand(*menu, id); };
    using enum CommandId;
    if (selected.empty()) {
        add(NewFolder);
        add(NewTextDocument);
        addTemplateMenu(*menu);
        menu->addSeparator();
        add(Paste);
        add(Reload);
        add(SelectAll);
        add(ShowHidden);
        tab()->activeView().addArrangementTo(*menu);
        menu->addSeparator();
        addOtherPane(*menu, {SwapPanes, SameFolder});
        add(OpenTerminal);
        add(StorageOverview);
        addPinEntry(*menu, pane()->current.get());
        add(Properties);
        menu->popup(global);
        return;
    }
    add(Open);
    addOpenWithMenu(*menu, selected);
    add(CommandId::LargeView);
    add(OpenInNewTab);
    if (m_actions.at(ShowInFolder)->isEnabled())
        add(ShowInFolder);
    addSendToMenu(*menu);
    menu->addSeparator();
    add(Cut);
    add(Copy);
    add(Paste);
    add(Duplicate);
    addOtherPane(*menu, {CopyToOther, MoveToOther});
    add(CopyPath);
    menu->addSeparator();
    add(Rename);
    addTagMenu(*menu, selected);
    addColorMenu(*menu, selected);
    if (selected.size() == 1 && selected.front().isFolder)
        addPinEntry(*menu, selected.front().location());
    addSizeEntry(*menu, selected);
    menu->addSeparator();
    add(MakeAlias);
    add(Compress);
    if (m_actions.at(Unpack)->isEnabled())
        add(Unpack);
    add(MoveToTrash);
    menu->addSeparator();
    add(Properties);
    menu->popup(global);
}

void MainWindow::addCommand(QMenu &menu, CommandId id)
{
    QAction *const entry = menu.addAction(Symbols::icon(symbolOf(id)), titleWithKey(id), this, [this, id] { run(id); });
    entry->setEnabled(m_actions.at(id)->isEnabled());
}

/// Commands for two panes, left out if there is one.
void MainWindow::addOtherPane(QMenu &menu, const std::vector<CommandId> &commands)
{
    if (!tab()->panes().dualPane.get())
        return;
    for (const CommandId id : commands)
        addCommand(menu, id);
}

void MainWindow::addPinEntry(QMenu &menu, const Location &folder)
{
    const bool pinned = m_services.pins.holds(folder);
    menu.addAction(Symbols::icon(pinned ? QStringLiteral("pin-off") : QStringLiteral("pin")),
                   pinned ? QStringLiteral("Aus Schnellzugriff entfernen")
                          : QStringLiteral("An Schnellzugriff anheften"),
                   this, [this, folder] {
                       if (const Result<void> done = m_services.pins.toggle(folder); !done)
                           fail(done.error().message);
                   });
}

void MainWindow::addTagMenu(QMenu &menu, const std::vector<FileItem> &items)
{
    QMenu *const tags = menu.addMenu(Symbols::icon(QStringLiteral("tag")), QStringLiteral("Markierung"));
    tags->setObjectName(QStringLiteral("tagMenu"));
    bool any = false;
    for (const FileTags::PaletteTag &tag : FileTags::all) {
        const QString name = tag.name.toString();
        const bool carried =
            std::ranges::any_of(items, [&name](const FileItem &item) { return item.tags.contains(name); });
        const bool byAll =
            std::ranges::all_of(items, [&name](const FileItem &item) { return item.tags.contains(name); });
        QAction *const entry = tags->addAction(tagIcon(QColor::fromRgb(tag.color), byAll     ? TagMark::All
                                                                                   : carried ? TagMark::Some
                                                                                             : TagMark::None),
                                               name, this, [this, name] { toggleTag(name); });
        entry->setObjectName(QStringLiteral("tag") + name);
    }
    for (const FileItem &item : items)
        any = any || !item.tags.isEmpty();
    tags->addSeparator();
    tags->addAction(QStringLiteral("Alle Markierungen entfernen"), this, [this] { removeTags(); })->setEnabled(any);
}

void MainWindow::toggleTag(const QString &tag)
{
    change([tag](const std::vector<Location> &entries) { return FileTags::toggle(tag, entries); });
}

void MainWindow::removeTags()
{
    change([](const std::vector<Location> &entries) { return FileTags::removeAll(entries); });
}

/// Changes the selected entries on a worker of their mount, then reloads the folder.
void MainWindow::change(std::function<Result<void>(const std::vector<Location> &)> work)
{
    const std::vector<Location> entries = locationsOf(pane()->selectedItems());
    if (entries.empty())
        return;
    const QPointer<BrowserModel> where = pane();
    onWorker(
        m_services.panes.workers, entries.front(), MountWorkers::Turn::OfMount, this,
        [entries, work = std::move(work)] { return work(entries); },
        [where, entries](const Result<void> &done) {
            if (!where)
                return;
            std::vector<ChangedEntry> changes;
            for (const Location &entry : entries)
                changes.push_back({entry, entry});
            where->showChanges(changes);
            if (done)
                where->dismissError();
            else
                where->showError(done.error().message);
        });
}

/// Shown once it is known that the user keeps templates.
void MainWindow::addTemplateMenu(QMenu &menu)
{
    QMenu *const models = menu.addMenu(Symbols::icon(QStringLiteral("file-text")), QStringLiteral("Neu aus Vorlage"));
    models->setObjectName(QStringLiteral("templateMenu"));
    models->menuAction()->setVisible(false);
    m_templates.start(
        m_services.panes.workers, {.where = m_services.folders().home},
        [home = m_services.folders().home](const JobControl &) { return templatesOf(home); },
        [this, shown = QPointer(models)](const std::vector<Location> &templates) {
            if (!shown)
                return;
            for (const Location &one : templates)
                shown->addAction(shownName(one).replace(u'&', QStringLiteral("&&")), this,
                                 [this, one] { m_files->newFromTemplate(one, *pane()); });
            shown->menuAction()->setVisible(!templates.empty());
        },
        [] {});
}

/// Looks up the applications for the type only when the menu opens.
void MainWindow::addOpenWithMenu(QMenu &menu, const std::vector<FileItem> &items)
{
    if (items.size() != 1 || items.front().isFolder)
        return;
    QMenu *const applications = menu.addMenu(Symbols::icon(QStringLiteral("app-window")), QStringLiteral("Öffnen mit"));
    applications->setObjectName(QStringLiteral("openWithMenu"));
    const Location entry = items.front().location();
    connect(applications, &QMenu::aboutToShow, applications, [this, applications, entry] {
        applications->clear();
        const QString type = fileTypeOf(extensionOf(entry.filename().native())).mimeName;
        for (const Application &one : m_services.agent.workspace.applicationsFor(type))
            applications->addAction(
                one.name, this, [this, entry, id = one.identifier] { m_services.operations.openWith({entry}, id); });
        if (applications->isEmpty())
            applications->addAction(QStringLiteral("Kein Programm gefunden"))->setEnabled(false);
        applications->addSeparator();
        applications->addAction(QStringLiteral("Anderes Programm …"), this,
                                [this, entry] { chooseApplication(entry); });
    });
}

void MainWindow::addSendToMenu(QMenu &menu)
{
    QMenu *const targets = menu.addMenu(Symbols::icon(QStringLiteral("send")), QStringLiteral("Senden an"));
    targets->setObjectName(QStringLiteral("sendToMenu"));
    for (const SendToTarget &target : m_services.sendTo.targets.get())
        targets->addAction(target.name, this, [this, target] { m_files->sendTo(target, *pane()); });
    targets->addSeparator();
    targets->addAction(QStringLiteral("Kopieren nach …"), this, [this] { run(CommandId::CopyTo); });
    targets->addAction(QStringLiteral("Verschieben nach …"), this, [this] { run(CommandId::MoveTo); });
    targets->addSeparator();
    addSendToChanges(*targets);
}

/// Edits the user's list: add the selected folder, move targets up or remove them.
void MainWindow::addSendToChanges(QMenu &menu)
{
    SendToTargets &list = m_services.sendTo;
    const std::vector<FileItem> selected = pane()->selectedItems();
    if (selected.size() == 1 && selected.front().isFolder)
        menu.addAction(QStringLiteral("„%1“ als Ziel hinzufügen").arg(selected.front().name()), this,
                       [&list, folder = selected.front().location()] { list.addFolder(folder); });
    QMenu *const up = menu.addMenu(QStringLiteral("Ziel nach oben"));
    QMenu *const remove = menu.addMenu(QStringLiteral("Ziel entfernen"));
    const std::vector<SendToTarget> &targets = list.targets.get();
    for (std::size_t place = 0; place < targets.size(); ++place) {
        const QUuid id = targets[place].id;
        if (place > 0)
            up->addAction(targets[place].name, this,
                          [&list, id, to = static_cast<int>(place) - 1] { list.move(id, to); });
        remove->addAction(targets[place].name, this, [&list, id] { list.remove(id); });
    }
    menu.addAction(QStringLiteral("Übliche Ziele wiederherstellen"), this, [&list] { list.restoreDefaults(); });
}

/// The colour of the folder's icon, stored by this program; not a tag.
void MainWindow::addColorMenu(QMenu &menu, const std::vector<FileItem> &items)
{
    if (!std::ranges::all_of(items, &FileItem::isFolder))
        return;
    QMenu *const colors = menu.addMenu(Symbols::icon(QStringLiteral("palette")), QStringLiteral("Ordnerfarbe"));
    const std::vector<Location> folders = locationsOf(items);
    const auto set = [this, folders](const std::optional<QString> &name) {
        for (const Location &folder : folders)
            m_services.panes.colors.setColor(folder, name);
        tab()->activeView().view().viewport()->update();
    };
    const std::optional<QString> now = m_services.panes.colors.color(folders.front());
    for (const FileTags::PaletteTag &tag : FileTags::all) {
        const QString name = tag.name.toString();
        colors->addAction(tagIcon(QColor::fromRgb(tag.color), now == name ? TagMark::All : TagMark::None), name, this,
                          [set, name] { set(name); });
    }
    colors->addSeparator();
    colors->addAction(QStringLiteral("Keine Farbe"), this, [set] { set(std::nullopt); })->setEnabled(now.has_value());
}

/// Counts the folder without the limit that applies to automatic counting.
void MainWindow::addSizeEntry(QMenu &menu, const std::vector<FileItem> &items)
{
    std::vector<Location> folders;
    for (const FileItem &item : items)
        if (item.isFolder)
            folders.push_back(item.location());
    if (folders.empty())
        return;
    FolderSizes &sizes = m_services.panes.sizes;
    if (std::ranges::any_of(folders, [&sizes](const Location &folder) { return sizes.calculating(folder); })) {
        QAction *const stop = menu.addAction(Symbols::icon(QStringLiteral("x")),
                                             QStringLiteral("Berechnung der Größe abbrechen"), this, [&sizes, folders] {
                                                 for (const Location &folder : folders)
                                                     sizes.cancel(folder);
                                             });
        stop->setObjectName(QStringLiteral("cancelSize"));
        return;
    }
    menu.addAction(Symbols::icon(QStringLiteral("chart-pie")), QStringLiteral("Größe berechnen"), this,
                   [&sizes, folders] {
                       for (const Location &folder : folders)
                           sizes.calculate(folder);
                   });
}

QString MainWindow::titleWithKey(CommandId id) const
{
    const QString key = m_services.shortcuts.textOf(id);
    return key.isEmpty() ? windowCommand(id).title : windowCommand(id).title + QLatin1Char('\t') + key;
}

/// Shows every command by group, with its shortcut.
QMenu *MainWindow::showAllCommands(QWidget *under)
{
    refreshState();
    QMenu *const menu = makeMenu(this, QStringLiteral("commandsMenu"));
    const CommandState now = state();
    for (const CommandGroup group : {CommandGroup::File, CommandGroup::Edit, CommandGroup::Go, CommandGroup::View}) {
        QMenu *const part = menu->addMenu(titleOf(group));
        for (const WindowCommand &one : commandTable()) {
            if (one.group != group || one.id == CommandId::AllCommands)
                continue;
            if (beginsSection(one.id))
                part->addSeparator();
            QAction *const entry = part->addAction(titleWithKey(one.id), this, [this, id = one.id] { run(id); });
            entry->setEnabled(one.enabled(now));
            if (one.checked) {
                entry->setCheckable(true);
                entry->setChecked(one.checked(now));
            } else if (const QString symbol = symbolOf(one.id); !symbol.isEmpty()) {
                // A symbol would cover the tick.
                entry->setIcon(Symbols::icon(symbol));
            }
        }
    }
    addUndoList(*menu);
    menu->popup(under->mapToGlobal(QPoint(under->width() - menu->sizeHint().width(), under->height() + 4)));
    return menu;
}

void MainWindow::showArrangement()
{
    tab()->activeView().showArrangement();
}

/// By key, so with the first entry current.
void MainWindow::openMenu()
{
    QMenu *const menu = showAllCommands(m_toolbar->menuButton());
    menu->setActiveAction(menu->actions().constFirst());
}

/// The places that the arrow leads to, the nearest first.
void MainWindow::showHistory(NavigationHistory::Way way, QWidget *under)
{
    constexpr std::size_t most = 20;
    const std::vector<PlaceVisit> &visits = pane()->history().visits(way);
    if (visits.empty() || hasSheet())
        return;
    QMenu *const menu = makeMenu(this, QStringLiteral("historyMenu"));
    for (std::size_t steps = 1; steps <= std::min(visits.size(), most); ++steps) {
        const Place &place = visits[visits.size() - steps].place;
        // Double the "&" of a name, so that it makes no mnemonic.
        const QString title = titleOf(place, m_services.folders()).replace(QLatin1Char('&'), QStringLiteral("&&"));
        menu->addAction(iconOf(place), title, this, [pane = QPointer(pane()), way, steps] {
            if (pane)
                pane->goInHistory(way, steps);
        });
    }
    menu->popup(under->mapToGlobal(QPoint(0, under->height() + 4)));
}

/// Shows the undo list, most recent first; undo works in this order.
void MainWindow::addUndoList(QMenu &menu)
{
    QMenu *const list = menu.addMenu(QStringLiteral("Rückgängig machen"));
    list->setObjectName(QStringLiteral("undoList"));
    list->setToolTipsVisible(true);
    constexpr std::size_t most = 20;
    const std::vector<UserAction> &actions = m_services.undo.actions.get();
    list->setEnabled(!actions.empty());
    for (std::size_t place = 0; place < std::min(actions.size(), most); ++place) {
        QAction *const entry = list->addAction(undoTitle(actions[place]), this, [this] { run(CommandId::Undo); });
        entry->setToolTip(undoLines(actions[place]).mid(0, 12).join(QLatin1Char('\n')));
        entry->setEnabled(place == 0);
    }
}

void MainWindow::showSettings()
{
    auto *const sheet = new SettingsSheet(m_services, this);
    connect(sheet, &SettingsSheet::failed, this, &MainWindow::fail);
    sheet->open();
}

void MainWindow::showAbout()
{
    (new DetailsSheet(QStringLiteral("Über %1").arg(Edition::name()), aboutLines(), this))->open();
}

void MainWindow::showShortcuts()
{
    (new ShortcutSheet(m_services.shortcuts, this))->open();
}

void MainWindow::open(const std::vector<FileItem> &items)
{
    for (const FileItem &item : items) {
        if (item.link == LinkState::Broken)
            fail(QStringLiteral("„%1“ verweist auf etwas, das es nicht mehr gibt.").arg(item.name()));
        else
            askBeforeStarting(item);
    }
}

/// Reads on a worker whether the file is a program, since its volume may not respond.
void MainWindow::askBeforeStarting(const FileItem &item)
{
    const Location entry = item.location();
    onWorker(
        m_services.panes.workers, entry, MountWorkers::Turn::OfMount, this,
        [entry, &workspace = m_services.agent.workspace] { return openingOf(entry, workspace); },
        [this, entry](Opening opening) {
            if (opening == Opening::Starts)
                askToStart(entry);
            else if (opening == Opening::Unpacks)
                askToUnpack(entry);
            else
                openNow(entry);
        });
}

void MainWindow::askToStart(const Location &program)
{
    auto *const question = new YesNoSheet(
        QStringLiteral("„%1“ ist ein Programm").arg(shownName(program)),
        QStringLiteral("Beim Öffnen wird es gestartet und darf alles, was du darfst. Starte es nur, wenn du weißt, "
                       "woher es kommt.\n\n%1")
            .arg(shown(program)),
        QStringLiteral("Starten"), ButtonKind::Danger, this);
    question->setObjectName(QStringLiteral("openQuestion"));
    connect(question, &YesNoSheet::accepted, this, [this, program] { openNow(program); });
    question->open();
}

void MainWindow::openNow(const Location &entry)
{
    say(QStringLiteral("Öffne „%1“ …").arg(shownName(entry)));
    onWorker(
        m_services.panes.workers, entry, MountWorkers::Turn::AtOnce, this,
        [entry, &workspace = m_services.agent.workspace] { return workspace.open(entry); },
        [this, entry](const Result<void> &opened) {
            if (!opened)
                fail(QStringLiteral("„%1“ kann nicht geöffnet werden: %2")
                         .arg(shownName(entry), opened.error().message));
        });
}

} // namespace brellin

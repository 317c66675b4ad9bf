#include "App/Window/FileCommands.h"

#include "App/Window/DesktopPasteboard.h"
#include "App/Window/Notices.h"
#include "Disk/OnWorker.h"
#include "FileOperations/Screens/BatchRenameSheet.h"
#include "FileOperations/Screens/OperationQuestions.h"
#include "FileOperations/Screens/PropertiesSheet.h"
#include "FileOperations/Screens/RightsSheet.h"
#include "FolderChooser/Screens/FolderChooser.h"
#include "History/HistoryList.h"
#include "Look/Attention.h"
#include "Look/YesNoSheet.h"
#include "Records/StepRecords.h"
#include "SendTo/MailAttachment.h"
#include "Transfers/Screens/TransferPanel.h"

#include <QApplication>
#include <QWindow>

#include <QTimer>

#include <algorithm>

namespace brellin {

namespace {

/// Work ID of undo in the panel; IDs of operations start at 1.
constexpr int undoWork = 0;

std::vector<PanelWork> workOf(const FileOperations &operations, const UserUndo &undo)
{
    std::vector<PanelWork> work;
    for (const RunningOperation &one : operations.operations.get())
        work.push_back({one.id, one.title, one.detail, one.progress});
    if (undo.running.get())
        work.push_back({undoWork,
                        undo.redoing() ? QStringLiteral("Wiederhole") : QStringLiteral("Mache rückgängig"),
                        {},
                        undo.progress.get()});
    return work;
}

/// What an action changed in the listings. What it put in the Trash is in none.
std::vector<ChangedEntry> changesOf(const UserAction &action)
{
    using Kind = UserAction::Kind;
    const bool moved = action.kind == Kind::Rename || action.kind == Kind::BatchRename || action.kind == Kind::Move;
    std::vector<ChangedEntry> changes;
    for (const UserAction::Entry &entry : action.entries) {
        if (action.kind == Kind::Trash)
            changes.push_back({entry.from, {}});
        else if (action.kind == Kind::Rights)
            changes.push_back({entry.to, entry.to});
        else
            changes.push_back({moved ? entry.from : Location(), entry.to});
    }
    return changes;
}

/// The sources to transfer again: those that failed or contain what failed, since a folder may be merged. All of them if
/// something else failed, such as the destination.
std::vector<Location> retried(const std::vector<Location> &failed, const std::vector<Location> &sources)
{
    const auto holds = [](const Location &source, const Location &one) {
        return isAtOrBelow(one, standardised(source));
    };
    const bool inSources = !failed.empty() && std::ranges::all_of(failed, [&](const Location &one) {
        return std::ranges::any_of(sources, [&](const Location &source) { return holds(source, one); });
    });
    if (!inSources)
        return sources;
    std::vector<Location> again;
    std::ranges::copy_if(sources, std::back_inserter(again), [&](const Location &source) {
        return std::ranges::any_of(failed, [&](const Location &one) { return holds(source, one); });
    });
    return again;
}

std::vector<Location> selectedIn(const BrowserModel &pane)
{
    return locationsOf(pane.selectedItems());
}

} // namespace

FileCommands::FileCommands(const WindowServices &services, QWidget *window)
    : QObject(window)
    , m_services(services)
    , m_window(window)
    , m_transferScreens(new TransferScreens(services.transfers, services.forTransfers, services.clock, window))
{
    connect(m_transferScreens, &TransferScreens::failed, this, &FileCommands::failed);
    services.transfers.lastFinished.observe(this, [this](const std::optional<FinishedTransfer> &last) {
        if (last)
            finished(*last);
    });
    new OperationQuestions(services.operations, window);
    services.notices.unread.observe(this, [this](const auto &) { tellNotices(); });
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &FileCommands::tellNotices, Qt::QueuedConnection);
    // An empty text would overwrite an error shown before.
    const auto say = [this](const QString &text) {
        if (!text.isEmpty() && attentionTo(*m_window) != Attention::Elsewhere)
            Q_EMIT said(text);
    };
    services.operations.status.observe(this, say);
    services.undo.status.observe(this, say);
    services.undo.actions.observe(this, [this](const std::vector<UserAction> &actions) {
        if (m_done && (actions.empty() || actions.front() != *m_done)) {
            m_done.reset();
            Q_EMIT doneIsPast();
        }
    });
    services.undo.title.observe(this, [this](const auto &) { Q_EMIT stateChanged(); });
    services.undo.redoTitle.observe(this, [this](const auto &) { Q_EMIT stateChanged(); });
    services.undo.undone.observe(this, [this](const auto &undone) { showUndone(undone); });
    services.history.undone.observe(this, [this](const auto &undone) { showUndone(undone); });
}

void FileCommands::add(BrowserModel *pane)
{
    const QUuid id = QUuid::createUuid();
    m_panes.emplace_back(id, pane);
    connect(pane, &QObject::destroyed, &m_services.notices,
            [&notices = m_services.notices, id] { notices.paneGone(id); });
    connect(pane, &QObject::destroyed, this,
            [this, id] { std::erase_if(m_panes, [&](const auto &one) { return one.first == id; }); });
    pane->onOwnChange([this](const Location &from, const Location &to) { recordChange(from, to); });
    pane->batchRename.observe(this, [this, pane](const std::optional<std::vector<Location>> &entries) {
        if (entries)
            renameSeveral(*pane, *entries);
    });
}

void FileCommands::showWorkIn(TransferPanel &panel)
{
    const auto show = [this, &panel] { panel.showWork(workOf(m_services.operations, m_services.undo)); };
    m_services.operations.operations.observe(&panel, [show](const auto &) { show(); });
    m_services.undo.running.observe(&panel, [show](bool) { show(); });
    m_services.undo.progress.observe(&panel, [show](const auto &) { show(); });
    connect(&panel, &TransferPanel::workCancelWanted, this, [this](int id) {
        if (id == undoWork)
            m_services.undo.cancel();
        else
            m_services.operations.cancel(id);
    });
    show();
}

/// Reads the entry's identity on a worker, since its volume may not respond.
void FileCommands::recordChange(const Location &from, const Location &to)
{
    onWorker(
        m_services.panes.workers, to, MountWorkers::Turn::OfMount, &m_services.undo,
        [from, to, &records = m_services.records] {
            const QUuid step = records.stepAt(to);
            if (from.empty())
                return UserAction{UserAction::Kind::NewFolder, {recordOfMade(from, to)}, false, step};
            return UserAction{UserAction::Kind::Rename, {recordOf(from, to)}, false, step};
        },
        [&undo = m_services.undo](const UserAction &action) { undo.record(action); });
}

/// Interrupted batch renames are only undone if the user agrees.
void FileCommands::visit(const Location &folder)
{
    m_transferScreens->visit(folder);
    m_looking.start(
        m_services.panes.workers, {.where = folder, .patience = FileCall<std::vector<CutShortRename>>::Patience::None},
        [folder, logs = m_services.renaming.renameLogs, now = m_services.clock.now()](const JobControl &) {
            return cutShortRenames(logs, folder, now);
        },
        [this](const std::vector<CutShortRename> &found) {
            if (!found.empty() && !m_restoring)
                offerRestoring(found);
        },
        [] {});
}

void FileCommands::loadPanes()
{
    for (const auto &[id, pane] : m_panes)
        if (pane)
            pane->load();
}

QUuid FileCommands::idOf(const BrowserModel &pane) const
{
    for (const auto &[id, known] : m_panes)
        if (known == &pane)
            return id;
    return {};
}

/// Shows the outcome in the pane: its rows, what came of it selected, or the neighbour of what left, and what failed.
FileOperations::Then FileCommands::showingIn(BrowserModel &pane, const RetryOf &retry)
{
    const auto show = [&pane, retry, beside = pane.neighboursOfSelection()](const OperationOutcome &outcome) {
        pane.showChanges(changesOf(outcome.action));
        std::vector<Location> here;
        for (const Location &place : outcome.places())
            if (place.parent_path() == pane.current.get())
                here.push_back(place);
        if (!here.empty())
            pane.select(here);
        else if (pane.selection.get().empty())
            pane.selectFirstOf(beside);
        if (!outcome.failures.isEmpty())
            pane.showFailure(paneFailure(outcome.message(), outcome.failures, retry));
        else if (!outcome.cancelled)
            pane.dismissError();
    };
    return {&pane, show, FileOperations::Failures::ToReceiver};
}

void FileCommands::newTextDocument(BrowserModel &pane)
{
    const auto again = [this, &pane](const auto &) { newTextDocument(pane); };
    m_services.operations.newTextDocument(pane.current.get(), naming(showingIn(pane, again), pane));
}

void FileCommands::newFromTemplate(const Location &model, BrowserModel &pane)
{
    const auto again = [this, &pane, model](const auto &) { newFromTemplate(model, pane); };
    m_services.operations.newFromTemplate(model, pane.current.get(), naming(showingIn(pane, again), pane));
}

/// What was made is given a name.
FileOperations::Then FileCommands::naming(FileOperations::Then then, BrowserModel &pane)
{
    then.call = [&pane, show = then.call](const OperationOutcome &outcome) {
        show(outcome);
        if (!outcome.places().empty())
            pane.beginRenameSelection();
    };
    return then;
}

void FileCommands::moveToTrash(BrowserModel &pane)
{
    if (const std::vector<Location> selected = selectedIn(pane); !selected.empty())
        trash(selected, pane);
}

void FileCommands::trash(const std::vector<Location> &entries, BrowserModel &pane)
{
    m_services.operations.trash(entries, showingIn(pane, [this, &pane](const auto &failed) { trash(failed, pane); }));
}

void FileCommands::deleteForGood(BrowserModel &pane)
{
    m_services.operations.deleteForGood(selectedIn(pane), showingIn(pane, {}));
}

void FileCommands::emptyTrash(BrowserModel &pane)
{
    TrashList &trash = m_services.trash;
    trash.refresh();
    // A volume that does not respond delays the question, but not for ever.
    auto *const patience = new QTimer(this);
    patience->setSingleShot(true);
    connect(patience, &QTimer::timeout, this, [this, patience, where = QPointer(&pane)] {
        patience->deleteLater();
        if (where)
            askToEmptyTrash(*where);
    });
    patience->start(2000);
    trash.loading.observe(patience, [patience](bool loading) {
        if (!loading)
            patience->start(0);
    });
    if (!trash.loading.get())
        patience->start(0);
}

void FileCommands::askToEmptyTrash(BrowserModel &pane)
{
    const bool read = !m_services.trash.loading.get();
    const TrashAmount amount = amountOf(m_services.trash.items.get());
    if (read && amount.count == 0)
        Q_EMIT said(QStringLiteral("Der Papierkorb ist schon leer."));
    else
        m_services.operations.emptyTrash(read ? std::optional(amount) : std::nullopt, showingIn(pane, {}));
}

void FileCommands::compress(BrowserModel &pane)
{
    compress(selectedIn(pane), pane);
}

void FileCommands::compress(const std::vector<Location> &entries, BrowserModel &pane)
{
    m_services.operations.compress(entries, pane.current.get(),
                                   showingIn(pane, [this, &pane, entries](const auto &) { compress(entries, pane); }));
}

void FileCommands::unpack(BrowserModel &pane)
{
    const std::vector<Location> selected = selectedIn(pane);
    if (selected.empty())
        return;
    const auto again = [this, &pane](const auto &) { unpack(pane); };
    m_services.operations.unpack(selected.front(), pane.current.get(), showingIn(pane, again));
}

void FileCommands::unpack(const Location &archive, BrowserModel &pane)
{
    const auto again = [this, &pane, archive](const auto &) { unpack(archive, pane); };
    m_services.operations.unpack(archive, archive.parent_path(), showingIn(pane, again));
}

void FileCommands::makeAlias(BrowserModel &pane)
{
    makeAliases(selectedIn(pane), pane);
}

void FileCommands::makeAliases(const std::vector<Location> &sources, BrowserModel &pane)
{
    m_services.operations.makeAlias(sources, pane.current.get(),
                                    showingIn(pane, [this, &pane](const auto &failed) { makeAliases(failed, pane); }));
}

void FileCommands::openTerminal(BrowserModel &pane)
{
    m_services.operations.openTerminal(pane.current.get());
}

void FileCommands::showPropertiesOfSelection(BrowserModel &pane)
{
    const std::vector<Location> selected = selectedIn(pane);
    showProperties(selected.empty() ? std::vector{pane.current.get()} : selected);
}

void FileCommands::cut(BrowserModel &pane)
{
    putOnClipboard({ClipboardFiles::Purpose::Cut, selectedIn(pane)});
}

void FileCommands::copy(BrowserModel &pane)
{
    putOnClipboard({ClipboardFiles::Purpose::Copy, selectedIn(pane)});
}

void FileCommands::duplicate(BrowserModel &pane)
{
    transfer(selectedIn(pane), pane.current.get(), TransferKind::Copy, pane);
}

void FileCommands::copyTo(BrowserModel &pane)
{
    askForFolder(TransferKind::Copy, pane);
}

void FileCommands::moveTo(BrowserModel &pane)
{
    askForFolder(TransferKind::Move, pane);
}

void FileCommands::copyToOther(BrowserModel &pane)
{
    if (pane.partner)
        transfer(selectedIn(pane), pane.partner->current.get(), TransferKind::Copy, pane);
}

void FileCommands::moveToOther(BrowserModel &pane)
{
    if (pane.partner)
        transfer(selectedIn(pane), pane.partner->current.get(), TransferKind::Move, pane);
}

void FileCommands::copyPath(BrowserModel &pane)
{
    DesktopPasteboard().setText(pathText(selectedIn(pane)));
}

void FileCommands::undo()
{
    m_services.undo.undo();
}

void FileCommands::redo()
{
    m_services.undo.redo();
}

void FileCommands::transfer(std::vector<Location> sources, const Location &destination, TransferKind kind,
                            BrowserModel &pane)
{
    if (sources.empty())
        return;
    const QUuid id = m_services.transfers.transfer({std::move(sources), destination, kind, idOf(pane)});
    if (kind == TransferKind::Move)
        m_beside[id] = pane.neighboursOfSelection();
}

void FileCommands::paste(BrowserModel &pane)
{
    const std::optional<ClipboardFiles> files = filesOnClipboard();
    if (!files)
        return;
    const bool cut = files->purpose == ClipboardFiles::Purpose::Cut;
    transfer(files->entries, pane.current.get(), cut ? TransferKind::Move : TransferKind::Copy, pane);
    clearCutFiles();
}

void FileCommands::askForFolder(TransferKind kind, BrowserModel &pane)
{
    const bool move = kind == TransferKind::Move;
    const FolderQuestion question{move ? QStringLiteral("move") : QStringLiteral("copy"),
                                  move ? QStringLiteral("Verschieben nach …") : QStringLiteral("Kopieren nach …"),
                                  move ? QStringLiteral("Verschieben") : QStringLiteral("Kopieren"), pane.current.get(),
                                  FolderQuestion::Use::Write};
    askForFolder(m_window, question,
                 [this, sources = selectedIn(pane), kind, asking = QPointer(&pane)](const Location &folder) {
                     if (asking)
                         transfer(sources, folder, kind, *asking);
                 });
}

void FileCommands::askForFolder(QWidget *asker, const FolderQuestion &question,
                                const std::function<void(const Location &)> &chosen)
{
    auto *const sheet = new FolderChooser(
        {m_services.panes, m_services.pins, m_services.volumeList, &m_services.thumbnails}, question, m_window);
    sheet->pane().onOwnChange([this](const Location &from, const Location &to) { recordChange(from, to); });
    connect(sheet, &FolderChooser::chosen, asker, chosen);
    sheet->begin();
}

void FileCommands::sendTo(const SendToTarget &target, BrowserModel &pane)
{
    const std::vector<Location> selected = selectedIn(pane);
    switch (target.kind) {
    case SendToTarget::Kind::Folder:
        transfer(selected, target.folder, TransferKind::Copy, pane);
        break;
    case SendToTarget::Kind::Zip:
        compress(selected, pane);
        break;
    case SendToTarget::Kind::DesktopAlias:
        m_services.operations.makeAlias(selected, m_services.folders().dir(StandardFolder::Desktop));
        break;
    case SendToTarget::Kind::Mail:
        attach(selected);
        break;
    }
}

/// On a worker, since starting the mail program may take seconds.
void FileCommands::attach(const std::vector<Location> &entries)
{
    onWorker(
        m_services.panes.workers, entries.front(), MountWorkers::Turn::AtOnce, &m_services.notices,
        [entries, &processes = m_services.processes] { return attachToMail(entries, processes, nullptr); },
        [&notices = m_services.notices](const Result<void> &done) {
            if (!done)
                notices.add(done.error().message);
        });
}

void FileCommands::showProperties(const std::vector<Location> &entries)
{
    auto *const sheet =
        new PropertiesSheet(std::make_unique<EntryProperties>(entries, m_services.renaming.mayChange), m_window);
    connect(sheet, &PropertiesSheet::tagsChanged, this, &FileCommands::loadPanes);
    connect(sheet, &PropertiesSheet::rightsWanted, this, [this, entries, sheet] { askForRights(entries, sheet); });
    sheet->begin();
}

/// The properties show the outcome.
void FileCommands::askForRights(const std::vector<Location> &entries, PropertiesSheet *properties)
{
    auto *const sheet = new RightsSheet(entries, m_services.renaming.mayChange, m_window);
    connect(sheet, &RightsSheet::accepted, properties, [this, entries, properties](const RightsWish &wish) {
        m_services.operations.changeRights(entries, wish, {properties, [this, properties](const OperationOutcome &) {
                                                               properties->readAgain();
                                                               loadPanes();
                                                           }});
    });
    sheet->open();
}

void FileCommands::renameSeveral(BrowserModel &pane, const std::vector<Location> &entries)
{
    auto *const sheet = new BatchRenameSheet(std::make_unique<BatchRename>(m_services.renaming, entries), m_window);
    connect(sheet, &SheetFrame::closed, &pane, [&pane] { pane.closeBatchRename(); });
    connect(sheet, &BatchRenameSheet::renamed, &pane, [&pane, entries](const std::vector<Location> &places) {
        std::vector<ChangedEntry> changes;
        for (const Location &entry : entries)
            changes.push_back({entry, {}});
        for (const Location &place : places)
            changes.push_back({{}, place});
        pane.showChanges(changes);
        pane.select(places);
    });
    sheet->begin();
}

/// The pane may have been closed while its transfer ran.
void FileCommands::finished(const FinishedTransfer &transfer)
{
    const auto beside = m_beside.extract(transfer.record.id);
    const auto asked = std::ranges::find(m_panes, transfer.pane, [](const auto &one) { return one.first; });
    if (asked == m_panes.end())
        return;
    if (asked->second)
        showArrival(transfer, *asked->second, beside ? beside.mapped() : std::vector<Location>());
    if (transfer.outcome.cancelled && !transfer.outcome.done.empty())
        Q_EMIT said(QStringLiteral("Abgebrochen. %1.").arg(titleOf(transfer.record)));
    else
        tellDone(transfer);
}

/// Failures stand in the banner instead.
void FileCommands::tellDone(const FinishedTransfer &transfer)
{
    const std::vector<TransferredEntry> &entries = transfer.record.entries;
    const std::vector<UserAction> &actions = m_services.undo.actions.get();
    if (entries.empty() || actions.empty() || !transfer.outcome.errors.isEmpty())
        return;
    if (std::ranges::find(actions.front().entries, entries.front().dst, &UserAction::Entry::to) ==
        actions.front().entries.end())
        return;
    m_done = actions.front();
    QString names = shownName(entries.front().dst);
    if (entries.size() > 1)
        names += QStringLiteral(" … und %1 weitere").arg(entries.size() - 1);
    Q_EMIT done(titleOf(transfer.record), names);
}

void FileCommands::showArrival(const FinishedTransfer &transfer, BrowserModel &pane,
                               const std::vector<Location> &beside)
{
    std::vector<ChangedEntry> changes;
    for (const TransferredEntry &entry : transfer.outcome.done)
        changes.push_back({entry.moved ? entry.src : Location(), entry.dst});
    for (const MergedFolder &folder : transfer.outcome.emptied)
        changes.push_back({folder.src, {}});
    const bool results = pane.searching.get() || pane.tagFilter.get();
    if (results)
        pane.showChanges(changes);
    else
        pane.reload();
    const std::vector<Location> arrived = transfer.arrived();
    const Location into = arrived.empty() ? Location() : arrived.front().parent_path();
    if (pane.partner && pane.partner->current.get() == into) {
        pane.partner->showChanges(changes);
        pane.partner->select(arrived);
    }
    if (pane.current.get() == into)
        pane.select(arrived);
    else if (pane.selection.get().empty())
        pane.selectFirstOf(beside);
    const std::optional<QString> message = transfer.errorMessage();
    if (!message) {
        pane.dismissError();
        return;
    }
    const auto again = [this, &pane, transfer](const std::vector<Location> &failed) {
        this->transfer(retried(failed, transfer.sources), transfer.record.destination, transfer.record.kind, pane);
    };
    pane.showFailure(paneFailure(*message, transfer.outcome.errors, again));
}

/// What came back is selected where it is shown.
void FileCommands::showUndone(const std::vector<UserAction::Entry> &undone)
{
    if (undone.empty())
        return;
    std::vector<ChangedEntry> changes;
    std::vector<Location> back;
    for (const UserAction::Entry &entry : undone) {
        // A folder that was merged is made again; the one it went into stays.
        const bool made = entry.merged && !entry.to.empty();
        changes.push_back({made ? Location() : entry.from, entry.to});
        if (!entry.to.empty())
            back.push_back(entry.to);
    }
    for (const auto &[id, pane] : m_panes) {
        if (!pane || !pane->mayShow(changes))
            continue;
        pane->showChanges(changes);
        pane->select(back);
    }
}

/// Shows unread notices if the window can be seen. Those that the user may not look at stay unread.
void FileCommands::tellNotices()
{
    const Attention attention = attentionTo(*m_window);
    if (m_services.notices.unread.get().isEmpty() || attention == Attention::Elsewhere)
        return;
    const QStringList messages =
        attention == Attention::Here ? m_services.notices.take() : m_services.notices.unread.get();
    Q_EMIT failed(messages.join(u'\n'));
}

void FileCommands::offerRestoring(const std::vector<CutShortRename> &found)
{
    auto *const sheet = new YesNoSheet(QStringLiteral("Unterbrochenes Umbenennen"), found.front().question(),
                                       QStringLiteral("Namen wiederherstellen"), ButtonKind::Primary, m_window);
    sheet->setObjectName(QStringLiteral("restoreQuestion"));
    m_restoring = sheet;
    connect(sheet, &YesNoSheet::accepted, this, [this, found] {
        onWorker(
            m_services.panes.workers, found.front().renames.front().from, MountWorkers::Turn::OfMount,
            &m_services.notices,
            [found, &files = m_services.renaming.files] {
                EntryFailures failures;
                for (const CutShortRename &batch : found)
                    failures += restoreCutShort(batch, files);
                return failures;
            },
            [&notices = m_services.notices](const EntryFailures &failures) {
                for (const QString &line : linesOf(failures))
                    notices.add(line);
            });
    });
    sheet->open();
}

} // namespace brellin

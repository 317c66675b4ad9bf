#include "App/Window/FileCommands.h"

#include "App/Window/DesktopPasteboard.h"
#include "App/Window/Notices.h"
#include "Disk/OnWorker.h"
#include "FileOperations/Screens/BatchRenameSheet.h"
#include "FileOperations/Screens/OperationQuestions.h"
#include "FileOperations/Screens/PropertiesSheet.h"
#include "Look/Attention.h"
#include "Look/YesNoSheet.h"
#include "SendTo/MailAttachment.h"
#include "Transfers/Screens/TransferPanel.h"

#include <QApplication>
#include <QFileDialog>
#include <QWindow>

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
    connect(m_transferScreens, &TransferScreens::failed, this, &FileCommands::said);
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
    services.undo.title.observe(this, [this](const auto &) { Q_EMIT stateChanged(); });
    services.undo.redoTitle.observe(this, [this](const auto &) { Q_EMIT stateChanged(); });
    services.undo.restored.observe(this, [this](const auto &) { loadPanes(); });
}

void FileCommands::add(BrowserModel *pane)
{
    const QUuid id = QUuid::createUuid();
    m_panes.emplace_back(id, pane);
    connect(pane, &QObject::destroyed, &m_services.notices,
            [&notices = m_services.notices, id] { notices.paneGone(id); });
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
        m_services.panes.workers, to, MountWorkers::Turn::OfMount, this,
        [from, to] {
            if (from.empty())
                return UserAction{UserAction::Kind::NewFolder, {recordOfMade(from, to)}};
            return UserAction{UserAction::Kind::Rename, {recordOf(from, to)}};
        },
        [this](const UserAction &action) { m_services.undo.record(action); });
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

/// Reloads the pane when an operation has ended, and selects its results.
FileOperations::Then FileCommands::reloading(BrowserModel &pane)
{
    return {&pane, [&pane](const OperationOutcome &outcome) {
                pane.load();
                std::vector<Location> here;
                for (const Location &place : outcome.places())
                    if (place.parent_path() == pane.current.get())
                        here.push_back(place);
                if (!here.empty())
                    pane.setSelection(Selection(here));
            }};
}

void FileCommands::newTextDocument(BrowserModel &pane)
{
    m_services.operations.newTextDocument(pane.current.get(), {&pane, [&pane](const OperationOutcome &outcome) {
                                                                   pane.load();
                                                                   if (outcome.places().empty())
                                                                       return;
                                                                   pane.setSelection(Selection(outcome.places()));
                                                                   pane.beginRenameSelection();
                                                               }});
}

void FileCommands::moveToTrash(BrowserModel &pane)
{
    if (const std::vector<Location> selected = selectedIn(pane); !selected.empty())
        m_services.operations.trash(selected, reloading(pane));
}

void FileCommands::deleteForGood(BrowserModel &pane)
{
    m_services.operations.deleteForGood(selectedIn(pane), reloading(pane));
}

void FileCommands::emptyTrash(BrowserModel &pane)
{
    m_services.operations.emptyTrash(reloading(pane));
}

void FileCommands::compress(BrowserModel &pane)
{
    m_services.operations.compress(selectedIn(pane), pane.current.get(), reloading(pane));
}

void FileCommands::unpack(BrowserModel &pane)
{
    if (const std::vector<Location> selected = selectedIn(pane); !selected.empty())
        m_services.operations.unpack(selected.front(), pane.current.get(), reloading(pane));
}

void FileCommands::makeAlias(BrowserModel &pane)
{
    m_services.operations.makeAlias(selectedIn(pane), pane.current.get(), reloading(pane));
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
    if (!sources.empty())
        m_services.transfers.transfer({std::move(sources), destination, kind, idOf(pane)});
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
    auto *const dialog =
        new QFileDialog(m_window, move ? QStringLiteral("Verschieben nach …") : QStringLiteral("Kopieren nach …"),
                        shown(pane.current.get()));
    dialog->setObjectName(QStringLiteral("folderDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setLabelText(QFileDialog::Accept, move ? QStringLiteral("Verschieben") : QStringLiteral("Kopieren"));
    const std::vector<Location> sources = selectedIn(pane);
    connect(dialog, &QFileDialog::fileSelected, &pane, [this, sources, kind, &pane](const QString &folder) {
        transfer(sources, Location(QFile::encodeName(folder).toStdString()), kind, pane);
    });
    dialog->open();
}

void FileCommands::sendTo(const SendToTarget &target, BrowserModel &pane)
{
    const std::vector<Location> selected = selectedIn(pane);
    switch (target.kind) {
    case SendToTarget::Kind::Folder:
        transfer(selected, target.folder, TransferKind::Copy, pane);
        break;
    case SendToTarget::Kind::Zip:
        m_services.operations.compress(selected, pane.current.get(), reloading(pane));
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
    sheet->begin();
}

void FileCommands::renameSeveral(BrowserModel &pane, const std::vector<Location> &entries)
{
    auto *const sheet = new BatchRenameSheet(std::make_unique<BatchRename>(m_services.renaming, entries), m_window);
    connect(sheet, &SheetFrame::closed, &pane, [&pane] { pane.closeBatchRename(); });
    connect(sheet, &BatchRenameSheet::renamed, &pane, [&pane](const std::vector<Location> &places) {
        pane.load();
        pane.setSelection(Selection(places));
    });
    sheet->begin();
}

/// The pane may have been closed while its transfer ran.
void FileCommands::finished(const FinishedTransfer &transfer)
{
    const auto asked = std::ranges::find(m_panes, transfer.pane, [](const auto &one) { return one.first; });
    if (asked != m_panes.end() && asked->second)
        showArrival(transfer, *asked->second);
}

void FileCommands::showArrival(const FinishedTransfer &transfer, BrowserModel &pane)
{
    pane.reload();
    if (const std::vector<Location> arrived = transfer.arrived();
        !arrived.empty() && arrived.front().parent_path() == pane.current.get())
        pane.setSelection(Selection(arrived));
    if (const std::optional<QString> message = transfer.errorMessage())
        pane.showError(*message);
}

/// The focused window shows notices and clears them. While no window has the focus, every window shows them, and they
/// stay unread.
void FileCommands::tellNotices()
{
    const Attention attention = attentionTo(*m_window);
    if (m_services.notices.unread.get().isEmpty() || attention == Attention::Elsewhere)
        return;
    const QStringList messages =
        attention == Attention::Here ? m_services.notices.take() : m_services.notices.unread.get();
    Q_EMIT said(messages.join(QStringLiteral(" · ")));
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

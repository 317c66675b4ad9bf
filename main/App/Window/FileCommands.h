#pragma once

#include "App/Window/WindowCommands.h"
#include "App/Window/WindowServices.h"
#include "FileOperations/RenameLog.h"
#include "FolderChooser/Screens/FolderQuestion.h"
#include "Transfers/Screens/TransferScreens.h"

#include <QPointer>
#include <QUuid>

#include <map>

namespace brellin {

class PropertiesSheet;
class TransferPanel;
class YesNoSheet;

/// File commands of one window: starts transfers and operations with the active pane's selection and shows their
/// outcome in that pane. Each pane has an ID; the queue runs one transfer at a time per ID.
class FileCommands : public QObject {
    Q_OBJECT
public:
    FileCommands(const WindowServices &services, QWidget *window);

    /// Adds a pane of this window. The pane may be destroyed at any time.
    void add(BrowserModel *pane);
    /// Shows operations and undo in the panel, beside the transfers.
    void showWorkIn(TransferPanel &panel);

    // Called by the command table for the pane's selected entries or its folder.
    void newTextDocument(BrowserModel &pane);
    void newFromTemplate(const Location &model, BrowserModel &pane);
    void moveToTrash(BrowserModel &pane);
    void deleteForGood(BrowserModel &pane);
    void emptyTrash(BrowserModel &pane);
    void compress(BrowserModel &pane);
    void unpack(BrowserModel &pane);
    /// Into the archive's own folder.
    void unpack(const Location &archive, BrowserModel &pane);
    void makeAlias(BrowserModel &pane);
    void openTerminal(BrowserModel &pane);
    /// Without a selection, shows those of the pane's folder.
    void showPropertiesOfSelection(BrowserModel &pane);
    void cut(BrowserModel &pane);
    void copy(BrowserModel &pane);
    void paste(BrowserModel &pane);
    void duplicate(BrowserModel &pane);
    void copyTo(BrowserModel &pane);
    void moveTo(BrowserModel &pane);
    /// To the folder of the other pane.
    void copyToOther(BrowserModel &pane);
    void moveToOther(BrowserModel &pane);
    void copyPath(BrowserModel &pane);
    void undo();
    void redo();

    /// Call when a pane shows a folder: offers to settle transfers and batch renames that a crash interrupted there.
    void visit(const Location &folder);

    void transfer(std::vector<Location> sources, const Location &destination, TransferKind kind, BrowserModel &pane);
    void sendTo(const SendToTarget &target, BrowserModel &pane);
    void showProperties(const std::vector<Location> &entries);
    /// See `AskForFolder`. A folder created there can be undone as in a pane.
    void askForFolder(QWidget *asker, const FolderQuestion &question,
                      const std::function<void(const Location &)> &chosen);

    Q_SIGNAL void said(const QString &message);
    /// A failure that belongs to no pane.
    Q_SIGNAL void failed(const QString &message);
    Q_SIGNAL void stateChanged();
    /// What a transfer did, and the names; undo would take it back.
    Q_SIGNAL void done(const QString &what, const QString &names);
    /// Undo would take back something else now.
    Q_SIGNAL void doneIsPast();

private:
    void attach(const std::vector<Location> &entries);
    void recordChange(const Location &from, const Location &to);
    void offerRestoring(const std::vector<CutShortRename> &found);
    void askForFolder(TransferKind kind, BrowserModel &pane);
    FileOperations::Then naming(FileOperations::Then then, BrowserModel &pane);
    void askForRights(const std::vector<Location> &entries, PropertiesSheet *properties);
    void renameSeveral(BrowserModel &pane, const std::vector<Location> &entries);
    void finished(const FinishedTransfer &transfer);
    void tellDone(const FinishedTransfer &transfer);
    void showArrival(const FinishedTransfer &transfer, BrowserModel &pane, const std::vector<Location> &beside);
    void trash(const std::vector<Location> &entries, BrowserModel &pane);
    void compress(const std::vector<Location> &entries, BrowserModel &pane);
    void makeAliases(const std::vector<Location> &sources, BrowserModel &pane);
    void showUndone(const std::vector<UserAction::Entry> &undone);
    void tellNotices();
    void askToEmptyTrash(BrowserModel &pane);
    FileOperations::Then showingIn(BrowserModel &pane, const RetryOf &retry);
    void loadPanes();
    QUuid idOf(const BrowserModel &pane) const;

    WindowServices m_services;
    QWidget *m_window;
    std::vector<std::pair<QUuid, QPointer<BrowserModel>>> m_panes;
    TransferScreens *m_transferScreens;
    QPointer<YesNoSheet> m_restoring;
    std::optional<UserAction> m_done; ///< as `done` told
    FileCall<std::vector<CutShortRename>> m_looking;
    /// Rows beside what a move takes away, by transfer: one of them is selected at its end.
    std::map<QUuid, std::vector<Location>> m_beside;
};

} // namespace brellin

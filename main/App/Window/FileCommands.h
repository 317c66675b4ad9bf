#pragma once

#include "App/Window/WindowCommands.h"
#include "App/Window/WindowServices.h"
#include "FileOperations/RenameLog.h"
#include "Transfers/Screens/TransferScreens.h"

#include <QPointer>
#include <QUuid>

namespace brellin {

class TransferPanel;
class YesNoSheet;

/// What a window's commands do with files: passes the active pane's selection on to the transfers and operations, and shows
/// in the pane what came of them. Each pane has an ID under which its transfers wait for each other.
class FileCommands : public QObject {
    Q_OBJECT
public:
    FileCommands(const WindowServices &services, QWidget *window);

    /// A pane of this window.
    void add(BrowserModel *pane);
    /// Shows in the window's panel what is under way besides transfers.
    void showWorkIn(TransferPanel &panel);

    // What commands of the table do with the selected entries of the pane, or in its folder.
    void newTextDocument(BrowserModel &pane);
    void moveToTrash(BrowserModel &pane);
    void deleteForGood(BrowserModel &pane);
    void emptyTrash(BrowserModel &pane);
    void compress(BrowserModel &pane);
    void unpack(BrowserModel &pane);
    void makeAlias(BrowserModel &pane);
    void openTerminal(BrowserModel &pane);
    /// Of the folder itself where nothing is selected.
    void showPropertiesOfSelection(BrowserModel &pane);
    void cut(BrowserModel &pane);
    void copy(BrowserModel &pane);
    void paste(BrowserModel &pane);
    void duplicate(BrowserModel &pane);
    void copyTo(BrowserModel &pane);
    void moveTo(BrowserModel &pane);
    void copyPath(BrowserModel &pane);
    void undo();
    void redo();

    /// A folder is shown: offers to clear up what a crash left in it.
    void visit(const Location &folder);

    void transfer(std::vector<Location> sources, const Location &destination, TransferKind kind, BrowserModel &pane);
    void sendTo(const SendToTarget &target, BrowserModel &pane);
    void showProperties(const std::vector<Location> &entries);

    Q_SIGNAL void said(const QString &message);
    Q_SIGNAL void stateChanged();

private:
    void attach(const std::vector<Location> &entries);
    void recordChange(const Location &from, const Location &to);
    void offerRestoring(const std::vector<CutShortRename> &found);
    void askForFolder(TransferKind kind, BrowserModel &pane);
    void renameSeveral(BrowserModel &pane, const std::vector<Location> &entries);
    void finished(const FinishedTransfer &transfer);
    void showArrival(const FinishedTransfer &transfer, BrowserModel &pane);
    void tellNotices();
    FileOperations::Then reloading(BrowserModel &pane);
    void loadPanes();
    QUuid idOf(const BrowserModel &pane) const;

    WindowServices m_services;
    QWidget *m_window;
    std::vector<std::pair<QUuid, QPointer<BrowserModel>>> m_panes; ///< those that are closed as well
    TransferScreens *m_transferScreens;
    QPointer<YesNoSheet> m_restoring;
    FileCall<std::vector<CutShortRename>> m_looking;
};

} // namespace brellin

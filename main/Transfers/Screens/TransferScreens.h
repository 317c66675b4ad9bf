#pragma once

#include "Disk/FileCall.h"
#include "System/Clock.h"
#include "Transfers/TransferQuestion.h"
#include "Transfers/TransferServices.h"
#include "Transfers/UnfinishedMove.h"

#include <QPointer>

#include <set>

namespace brellin {

class QuestionSheet;
class SheetFrame;
class TransferQueue;

/// Shows the questions of transfers over one window, and offers to clean up what a crash left in visited folders.
///
/// Each window has an instance. A question appears over the active window and moves along with the user; an answer in
/// one window settles it for all. While no window of the program is active it appears over all of them.
class TransferScreens : public QObject {
    Q_OBJECT
public:
    /// Queue, services and clock must outlive it. Destroyed with the window.
    TransferScreens(TransferQueue &queue, TransferServices services, const Clock &clock, QWidget *window);

    /// Searches, on a worker, for leftovers of a crash in this folder and for unfinished moves anywhere. What was
    /// declined is not asked again; an unfinished move is offered only once for all windows.
    void visit(const Location &folder);

    /// An error for the window to show.
    Q_SIGNAL void failed(const QString &message);

private:
    bool maySpeak() const;
    void follow();
    void open(const TransferQuestion &question);
    void offer(std::vector<Location> leftovers);
    void removeAll(const std::vector<Location> &leftovers);
    void lookForUnfinishedMoves();
    void offer(std::vector<UnfinishedMove> moves);
    void finish(const UnfinishedMove &move);
    void say(const EntryFailures &failures);

    TransferQueue &m_queue;
    const TransferServices m_services;
    const Clock &m_clock;
    QWidget *const m_window;
    QPointer<QuestionSheet> m_sheet;
    QUuid m_asked; ///< id of the question on display
    QPointer<SheetFrame> m_offer;
    std::set<Location> m_kept; ///< leftovers the user has chosen to keep
    FileCall<std::vector<Location>> m_looking;
    FileCall<EntryFailures> m_removing;
    FileCall<std::vector<UnfinishedMove>> m_comparing;
    FileCall<EntryFailures> m_finishing;
};

} // namespace brellin

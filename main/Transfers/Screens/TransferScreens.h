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

/// Asks over one window what transfers want to know, and whether to remove what a crash left in a folder that is visited.
///
/// Each window has one. A question stands over the window that is active, and moves with the user to another; an answer in
/// one is an answer for all. While no window of the program is active it waits over all of them.
class TransferScreens : public QObject {
    Q_OBJECT
public:
    /// Queue, services and clock outlive it; it goes with the window.
    TransferScreens(TransferQueue &queue, TransferServices services, const Clock &clock, QWidget *window);

    /// Looks, on a worker, for what a crash left in this folder, and for moves that it left half done anywhere. Declined once,
    /// it is not asked about again; a move not in any window of the queue either.
    void visit(const Location &folder);

    /// Something went wrong, for the window to say.
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
    void say(const QStringList &failures);

    TransferQueue &m_queue;
    const TransferServices m_services;
    const Clock &m_clock;
    QWidget *const m_window;
    QPointer<QuestionSheet> m_sheet;
    QUuid m_asked; ///< what the sheet asks
    QPointer<SheetFrame> m_offer;
    std::set<Location> m_kept; ///< leftovers that the user wants to keep
    FileCall<std::vector<Location>> m_looking;
    FileCall<QStringList> m_removing;
    FileCall<std::vector<UnfinishedMove>> m_comparing;
    FileCall<QStringList> m_finishing;
};

} // namespace brellin

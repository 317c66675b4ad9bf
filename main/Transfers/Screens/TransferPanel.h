#pragma once

#include "Transfers/Screens/WorkRows.h"

#include <QPointer>
#include <QUuid>
#include <QVariantAnimation>
#include <QWidget>

#include <chrono>
#include <map>
#include <vector>

class QScrollArea;
class QTimer;
class QVBoxLayout;

namespace brellin {

class Card;
class JobRow;
class Separator;
class TextLabel;
class TransferQueue;
class WaitingRow;
struct FinishedTransfer;

/// A card at the lower right of a window with running and waiting transfers, other file operations and, for a while,
/// remarks on finished transfers. Slides in when something takes long enough, and out when nothing is left. Never takes
/// the focus by itself, and returns it when it disappears.
class TransferPanel : public QWidget {
    Q_OBJECT
public:
    /// Operations shorter than `patience` are not shown; remarks stay for `reading`. The queue must outlive the panel.
    TransferPanel(TransferQueue &queue, QWidget *window,
                  std::chrono::milliseconds patience = std::chrono::milliseconds(300),
                  std::chrono::milliseconds reading = std::chrono::seconds(15));

    QSize sizeHint() const override;
    /// Moves the panel to the lower right of `area` (window coordinates), at most two thirds of its height. Call on
    /// `placeWanted` and when the area changes.
    void placeIn(const QRect &area);

    /// Replaces the list of other operations on display.
    void showWork(std::vector<PanelWork> work);

    Q_SIGNAL void workCancelWanted(int id);
    /// The panel is about to appear, or its size has changed.
    Q_SIGNAL void placeWanted();
    /// The panel has appeared or disappeared.
    Q_SIGNAL void shownChanged(bool shown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Note {
        QUuid id;
        QString title;
        QString text;
    };

    void build();
    void follow();
    void refresh();
    void showJobs();
    void showWorkRows();
    void showNotes();
    void showWaiting();
    void showAsking();
    void note(const FinishedTransfer &finished);
    void forgetNote(const QUuid &id);
    template <class Id, class Row, class List, class IdOf, class Make>
    void arrange(std::map<Id, Row *> &rows, QVBoxLayout *column, const List &list, IdOf idOf, Make make);
    template <class Id, class Row>
    void removeAll(std::map<Id, Row *> &rows);
    void removeRow(QWidget *row);
    void appear();
    void leave();
    void left();
    void slide(double from, double to);
    void moveCard();
    void takeKeysFrom(QWidget *part);
    void giveKeysBack();

    TransferQueue &m_queue;
    Card *m_card = nullptr;
    QScrollArea *m_area = nullptr;
    QVBoxLayout *m_noteColumn = nullptr;
    QVBoxLayout *m_jobColumn = nullptr;
    QVBoxLayout *m_workColumn = nullptr;
    QVBoxLayout *m_waitingColumn = nullptr;
    Separator *m_line = nullptr;
    TextLabel *m_waitingHead = nullptr;
    std::map<QUuid, JobRow *> m_jobs;
    std::map<int, WorkRow *> m_workRows;
    std::map<QUuid, NoteRow *> m_noteRows;
    std::map<QUuid, WaitingRow *> m_waiting;
    std::vector<PanelWork> m_work;
    std::vector<Note> m_notes;
    const std::chrono::milliseconds m_reading;
    QTimer *m_patience = nullptr;
    QVariantAnimation m_slide; ///< offset of the card below its place, as a fraction of its height
    double m_below = 0;
    bool m_open = false;
    QPointer<QWidget> m_keysBefore; ///< focused before the focus entered the panel
};

} // namespace brellin

#pragma once

#include <QPointer>
#include <QUuid>
#include <QVariantAnimation>
#include <QWidget>

#include <chrono>
#include <map>

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

/// A card at the lower right of a window that shows the transfers under way and those that wait. It comes by itself when there
/// is something to show for a while, and goes with it; it never takes the keys by itself, and gives them back when it goes.
class TransferPanel : public QWidget {
    Q_OBJECT
public:
    /// What takes no longer than `patience` is not shown. The queue outlives the panel.
    TransferPanel(TransferQueue &queue, QWidget *window,
                  std::chrono::milliseconds patience = std::chrono::milliseconds(300));

    QSize sizeHint() const override;
    /// Takes its place at the lower right of `area` (in the window), two thirds of its height at most. To be called when `placeWanted`
    /// says so, and when the area changes.
    void placeIn(const QRect &area);

    /// It is about to appear, or wants another size.
    Q_SIGNAL void placeWanted();
    /// It has appeared, or gone.
    Q_SIGNAL void shownChanged(bool shown);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    void follow();
    void refresh();
    void showJobs();
    void showWaiting();
    void showAsking();
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
    QVBoxLayout *m_jobColumn = nullptr;
    QVBoxLayout *m_waitingColumn = nullptr;
    Separator *m_line = nullptr;
    TextLabel *m_waitingHead = nullptr;
    std::map<QUuid, JobRow *> m_jobs;
    std::map<QUuid, WaitingRow *> m_waiting;
    QTimer *m_patience = nullptr;
    QVariantAnimation m_slide; ///< how far the card is below its place, 0 … 1 of its height
    double m_below = 0;
    bool m_open = false;
    QPointer<QWidget> m_keysBefore; ///< had the focus before it came into the panel
};

} // namespace brellin

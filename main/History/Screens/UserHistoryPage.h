#pragma once

#include "History/HistoryList.h"
#include "Places/KnownFolders.h"
#include "System/Clock.h"

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStackedLayout;

namespace brellin {

class EmptyState;
class HistoryRows;
class TextLabel;

/// The "Verlauf" page: what the user and the agent did with files, by day; where an entry of some name went and is now;
/// and the way back of every step.
class UserHistoryPage : public QWidget {
    Q_OBJECT
public:
    /// All of it must outlive the page.
    UserHistoryPage(HistoryList &history, const KnownFolders &folders, const Clock &clock, QWidget *parent);

    /// Shows what came of undoing a run.
    void tell(const QString &text);

    Q_SIGNAL void showRequested(const brellin::Location &entry);
    /// A run of the agent is to be undone.
    Q_SIGNAL void undoRunRequested(const QUuid &run);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void buildHead();
    void buildFoot();
    void connectAll();
    HistoryFilter filter() const;
    void offerFolders();
    void refreshRows();
    void refreshState();
    void showOutcome();
    void showEmpty();
    void showCurrent();
    void takeCurrentBack();
    QString whyNotBack() const;
    void askToClear();
    void showMenu(QPoint at);

    HistoryList &m_history;
    const KnownFolders &m_folders;
    const Clock &m_clock;
    QLineEdit *m_name = nullptr;
    QComboBox *m_kind = nullptr;
    QComboBox *m_folder = nullptr;
    std::vector<Location> m_offered; ///< in the order of the folder box, behind "Alle Ordner"
    TextLabel *m_damage = nullptr;
    QProgressBar *m_busy = nullptr;
    HistoryRows *m_rows = nullptr;
    EmptyState *m_empty = nullptr;
    QStackedLayout *m_stack = nullptr;
    TextLabel *m_outcome = nullptr;
    QCheckBox *m_on = nullptr;
    QPushButton *m_clear = nullptr;
    QPushButton *m_show = nullptr;
    QPushButton *m_back = nullptr;
    QTimer m_typing;
    QString m_told; ///< of the agent, until the next step is taken back
};

} // namespace brellin

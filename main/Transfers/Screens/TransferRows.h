#pragma once

#include "Look/Tokens.h"

#include <QWidget>

#include <memory>

class QProgressBar;

namespace brellin {

class ElidedLabel;
class ProgressText;
class SymbolButton;
class TransferJob;
struct WaitingTransfer;

/// A running transfer with its progress bar and buttons.
class JobRow : public QWidget {
    Q_OBJECT
public:
    JobRow(std::shared_ptr<TransferJob> job, QWidget *parent);

    const TransferJob &job() const { return *m_job; }
    /// Whether it is waiting for an answer.
    void setAsking(bool asking);

    Q_SIGNAL void pauseWanted(bool paused);
    Q_SIGNAL void cancelWanted();

private:
    void build();
    void follow();
    void refresh();
    QString state() const;
    void showBar();

    const std::shared_ptr<TransferJob> m_job;
    bool m_asking = false;
    ElidedLabel *m_title = nullptr;
    ElidedLabel *m_name = nullptr;
    ProgressText *m_rate = nullptr;
    QProgressBar *m_bar = nullptr;
    ProgressText *m_detail = nullptr;
    SymbolButton *m_pause = nullptr;
    SymbolButton *m_cancel = nullptr;
};

/// A transfer waiting in the queue.
class WaitingRow : public QWidget {
    Q_OBJECT
public:
    WaitingRow(const WaitingTransfer &waiting, QWidget *parent);

    Q_SIGNAL void cancelWanted();
};

} // namespace brellin

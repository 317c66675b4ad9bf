#include "Transfers/Screens/TransferPanel.h"

#include "Base/German.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/TransferRows.h"
#include "Transfers/TransferQueue.h"
#include "Transfers/TransferTexts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace brellin {

namespace {

constexpr int sliding = 160; ///< milliseconds
constexpr int padding = 14;

QVBoxLayout *addColumn(QVBoxLayout &column, int spacing)
{
    auto *const part = new QVBoxLayout;
    part->setSpacing(spacing);
    column.addLayout(part);
    return part;
}

} // namespace

TransferPanel::TransferPanel(TransferQueue &queue, QWidget *window, std::chrono::milliseconds patience,
                             std::chrono::milliseconds reading)
    : QWidget(window)
    , m_queue(queue)
    , m_reading(reading)
    , m_patience(new QTimer(this))
{
    setObjectName(QStringLiteral("transferPanel"));
    setAccessibleName(QStringLiteral("Übertragungen"));
    build();
    hide();
    m_patience->setSingleShot(true);
    m_patience->setInterval(patience);
    m_slide.setDuration(sliding);
    m_slide.setEasingCurve(QEasingCurve::OutCubic);
    follow();
    refresh();
}

void TransferPanel::build()
{
    m_card = new Card(this);
    const int margin = shadowReach() + scaled(padding);
    m_card->content()->setContentsMargins(margin, margin, margin, margin);
    auto *const inner = new QWidget;
    auto *const column = new QVBoxLayout(inner);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(8));
    m_noteColumn = addColumn(*column, scaled(12));
    m_jobColumn = addColumn(*column, scaled(16));
    m_workColumn = addColumn(*column, scaled(16));
    m_line = new Separator(Qt::Horizontal, inner);
    column->addWidget(m_line);
    m_waitingHead = makeHeading({}, inner);
    m_waitingHead->setObjectName(QStringLiteral("transferWaitingHead"));
    column->addWidget(m_waitingHead);
    m_waitingColumn = addColumn(*column, 0);
    column->addStretch(1);
    m_area = new QScrollArea(m_card);
    m_area->setWidget(inner);
    inner->setAutoFillBackground(false); // setWidget() switched it on
    m_area->viewport()->setAutoFillBackground(false);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    inner->installEventFilter(this);
    m_card->content()->addWidget(m_area);
}

void TransferPanel::follow()
{
    m_queue.jobs.observe(this, [this](const auto &) { refresh(); });
    m_queue.waiting.observe(this, [this](const auto &) { refresh(); });
    m_queue.questions.observe(this, [this](const auto &) { showAsking(); });
    m_queue.lastFinished.observe(this, [this](const std::optional<FinishedTransfer> &last) { note(*last); });
    connect(m_patience, &QTimer::timeout, this, &TransferPanel::appear);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_below = value.toDouble();
        moveCard();
    });
    connect(&m_slide, &QVariantAnimation::finished, this, [this] {
        if (!m_open)
            left();
    });
    connect(&Theme::shared(), &Theme::changed, this, [this] {
        if (isVisible())
            Q_EMIT placeWanted();
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *old, QWidget *now) {
        if (now && isAncestorOf(now) && old && !isAncestorOf(old))
            m_keysBefore = old;
    });
}

void TransferPanel::refresh()
{
    if (m_queue.jobs.get().empty() && m_queue.waiting.get().empty() && m_work.empty() && m_notes.empty()) {
        m_patience->stop();
        // Keep the last rows until the panel has slid out.
        leave();
        return;
    }
    showNotes();
    showJobs();
    showWorkRows();
    showWaiting();
    showAsking();
    if (!m_open && isVisible())
        appear(); // it was sliding out
    else if (!m_open && !m_patience->isActive())
        m_patience->start();
}

template <class Id, class Row>
void TransferPanel::removeAll(std::map<Id, Row *> &rows)
{
    for (const auto &[id, row] : rows)
        removeRow(row);
    rows.clear();
}

/// Updates rows to match a list: removes those whose element is gone, and creates missing ones with `make`.
template <class Id, class Row, class List, class IdOf, class Make>
void TransferPanel::arrange(std::map<Id, Row *> &rows, QVBoxLayout *column, const List &list, IdOf idOf, Make make)
{
    std::erase_if(rows, [&](const auto &one) {
        const bool gone = std::ranges::find(list, one.first, idOf) == std::ranges::end(list);
        if (gone)
            removeRow(one.second);
        return gone;
    });
    for (const auto &one : list) {
        Row *&row = rows[std::invoke(idOf, one)];
        if (!row)
            column->addWidget(row = make(one));
    }
}

void TransferPanel::showJobs()
{
    const auto idOf = [](const std::shared_ptr<TransferJob> &job) { return job->id; };
    arrange(m_jobs, m_jobColumn, m_queue.jobs.get(), idOf, [this](const std::shared_ptr<TransferJob> &job) {
        auto *const row = new JobRow(job, m_area->widget());
        connect(row, &JobRow::pauseWanted, this, [job](bool paused) { job->setPaused(paused); });
        connect(row, &JobRow::cancelWanted, this, [this, row, id = job->id] {
            // A cancelled job's buttons get disabled, so the focus must go.
            takeKeysFrom(row);
            m_queue.cancel(id);
        });
        return row;
    });
}

void TransferPanel::showWork(std::vector<PanelWork> work)
{
    if (work == m_work)
        return;
    // If there was no work, remaining rows are leftovers that are sliding out.
    if (m_work.empty())
        removeAll(m_workRows);
    m_work = std::move(work);
    refresh();
}

void TransferPanel::showWorkRows()
{
    arrange(m_workRows, m_workColumn, m_work, &PanelWork::id, [this](const PanelWork &one) {
        auto *const row = new WorkRow(m_area->widget());
        connect(row, &WorkRow::cancelWanted, this, [this, row, id = one.id] {
            takeKeysFrom(row);
            Q_EMIT workCancelWanted(id);
        });
        return row;
    });
    for (const PanelWork &one : m_work)
        m_workRows.at(one.id)->show(one);
}

/// Reports once per finished transfer what its copies could not preserve.
void TransferPanel::note(const FinishedTransfer &finished)
{
    const QStringList &lines = finished.outcome.notes;
    if (lines.isEmpty())
        return;
    const QUuid id = finished.record.id;
    m_notes.push_back({id, titleOf(finished.record), lines.join(u'\n')});
    QTimer::singleShot(m_reading, this, [this, id] { forgetNote(id); });
    refresh();
}

void TransferPanel::forgetNote(const QUuid &id)
{
    if (std::erase_if(m_notes, [&](const Note &one) { return one.id == id; }) > 0)
        refresh();
}

void TransferPanel::showNotes()
{
    arrange(m_noteRows, m_noteColumn, m_notes, &Note::id, [this](const Note &one) {
        auto *const row = new NoteRow(one.title, one.text, m_area->widget());
        connect(row, &NoteRow::closeWanted, this, [this, id = one.id] { forgetNote(id); });
        return row;
    });
}

void TransferPanel::showWaiting()
{
    const std::vector<WaitingTransfer> &waiting = m_queue.waiting.get();
    arrange(m_waiting, m_waitingColumn, waiting, &WaitingTransfer::id, [this](const WaitingTransfer &one) {
        auto *const row = new WaitingRow(one, m_area->widget());
        connect(row, &WaitingRow::cancelWanted, this, [this, id = one.id] { m_queue.cancel(id); });
        return row;
    });
    m_line->setVisible(!waiting.empty() && !(m_jobs.empty() && m_workRows.empty() && m_noteRows.empty()));
    m_waitingHead->setVisible(!waiting.empty());
    m_waitingHead->setText(counted(static_cast<qint64>(waiting.size()), QStringLiteral("Übertragung wartet"),
                                   QStringLiteral("Übertragungen warten")));
}

void TransferPanel::showAsking()
{
    for (const auto &[id, row] : m_jobs)
        row->setAsking(std::ranges::find(m_queue.questions.get(), id, &TransferQuestion::transfer) !=
                       m_queue.questions.get().end());
}

void TransferPanel::removeRow(QWidget *row)
{
    takeKeysFrom(row);
    row->hide();
    row->deleteLater();
}

void TransferPanel::takeKeysFrom(QWidget *part)
{
    if (QWidget *const focused = QApplication::focusWidget(); focused && part->isAncestorOf(focused))
        giveKeysBack();
}

void TransferPanel::giveKeysBack()
{
    if (m_keysBefore && m_keysBefore->isVisible())
        m_keysBefore->setFocus(Qt::OtherFocusReason);
}

void TransferPanel::appear()
{
    if (m_open)
        return;
    m_open = true;
    const bool fresh = !isVisible();
    Q_EMIT placeWanted();
    if (fresh)
        m_below = Theme::shared().motion() ? 1 : 0;
    moveCard();
    show();
    raise();
    slide(m_below, 0);
    if (fresh)
        Q_EMIT shownChanged(true);
}

void TransferPanel::leave()
{
    if (!m_open) {
        if (!isVisible())
            left();
        return;
    }
    m_open = false;
    takeKeysFrom(this);
    slide(m_below, 1);
}

/// Called when the panel has slid out.
void TransferPanel::left()
{
    removeAll(m_jobs);
    removeAll(m_workRows);
    removeAll(m_noteRows);
    removeAll(m_waiting);
    if (!isVisible())
        return;
    hide();
    Q_EMIT shownChanged(false);
}

void TransferPanel::slide(double from, double to)
{
    m_slide.stop();
    if (!Theme::shared().motion() || from == to) {
        m_below = to;
        moveCard();
        if (!m_open)
            left();
        return;
    }
    m_slide.setStartValue(from);
    m_slide.setEndValue(to);
    m_slide.start();
}

void TransferPanel::moveCard()
{
    m_card->setGeometry(0, qRound(m_below * height()), width(), height());
}

QSize TransferPanel::sizeHint() const
{
    const int around = 2 * (shadowReach() + scaled(padding));
    return {scaled(400) + 2 * shadowReach(), m_area->widget()->sizeHint().height() + around};
}

void TransferPanel::placeIn(const QRect &area)
{
    const QSize size = sizeHint().boundedTo({area.width(), area.height() * 2 / 3});
    setGeometry(QRect(area.bottomRight() - QPoint(size.width() - 1, size.height() - 1), size));
}

bool TransferPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && isVisible())
        Q_EMIT placeWanted();
    return QWidget::eventFilter(watched, event);
}

/// Return activates the focused button; Esc returns the focus.
void TransferPanel::keyPressEvent(QKeyEvent *event)
{
    auto *const button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
    if (event->key() == Qt::Key_Escape)
        giveKeysBack();
    else if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QWidget::keyPressEvent(event);
}

void TransferPanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    moveCard();
}

} // namespace brellin

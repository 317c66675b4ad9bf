#include "Transfers/Screens/TransferRows.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/ProgressText.h"
#include "Transfers/Screens/RowParts.h"
#include "Transfers/TransferQueue.h"

#include <QHBoxLayout>
#include <QProgressBar>

#include <utility>

namespace brellin {

using namespace rowParts;

JobRow::JobRow(std::shared_ptr<TransferJob> job, QWidget *parent) : QWidget(parent), m_job(std::move(job))
{
    setObjectName(QStringLiteral("transferJob"));
    build();
    follow();
    refresh();
}

void JobRow::build()
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(5));
    QHBoxLayout *const head = addLine(*column);
    head->addWidget(
        makeMark(m_job->move ? QStringLiteral("folder-input") : QStringLiteral("copy"), Token::Accent, this));
    m_title = makeBoldLine(QStringLiteral("transferTitle"), this);
    head->addWidget(m_title, 1);

    QHBoxLayout *const middle = addLine(*column);
    m_name = new ElidedLabel({}, Token::Secondary, 0.92, this);
    m_name->setObjectName(QStringLiteral("transferName"));
    m_rate = new ProgressText(this);
    m_rate->setObjectName(QStringLiteral("transferRate"));
    middle->addWidget(m_name, 1);
    middle->addWidget(m_rate);

    m_bar = makeBar(QStringLiteral("transferBar"), this);
    column->addWidget(m_bar);

    QHBoxLayout *const foot = addLine(*column);
    foot->setSpacing(0);
    m_detail = new ProgressText(this);
    m_detail->setObjectName(QStringLiteral("transferDetail"));
    m_detail->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_pause = new SymbolButton(QStringLiteral("pause"), {}, QStringLiteral("transferPause"), this);
    m_cancel =
        new SymbolButton(QStringLiteral("x"), QStringLiteral("Abbrechen"), QStringLiteral("transferCancel"), this);
    foot->addWidget(m_detail, 1);
    foot->addWidget(m_pause);
    foot->addWidget(m_cancel);
}

void JobRow::follow()
{
    const auto heard = [this](const auto &) { refresh(); };
    m_job->count.observe(this, heard);
    m_job->totalBytes.observe(this, heard);
    m_job->bytes.observe(this, heard);
    m_job->currentName.observe(this, heard);
    m_job->measuring.observe(this, heard);
    m_job->paused.observe(this, heard);
    m_job->cancelling.observe(this, heard);
    m_job->rate.observe(this, heard);
    m_job->detailText.observe(this, heard);
    connect(m_pause, &QToolButton::clicked, this, [this] { Q_EMIT pauseWanted(!m_job->paused.get()); });
    connect(m_cancel, &QToolButton::clicked, this, &JobRow::cancelWanted);
}

void JobRow::setAsking(bool asking)
{
    m_asking = asking;
    refresh();
}

/// One line about the progress.
QString JobRow::state() const
{
    if (m_job->cancelling.get())
        return QStringLiteral("Wird abgebrochen …");
    if (m_asking)
        return QStringLiteral("Wartet auf deine Antwort");
    return m_job->detailText.get();
}

void JobRow::refresh()
{
    const bool paused = m_job->paused.get();
    const bool cancelling = m_job->cancelling.get();
    m_title->setText(m_job->title());
    m_name->setText(m_job->currentName.get());
    m_rate->setText(paused || cancelling ? QString() : m_job->rateText());
    m_detail->setText(state());
    showBar();
    const QString action = paused ? QStringLiteral("Fortsetzen") : QStringLiteral("Anhalten");
    m_pause->setSymbol(paused ? QStringLiteral("play") : QStringLiteral("pause"));
    m_pause->setToolTip(action);
    m_pause->setAccessibleName(action + QStringLiteral(": ") + m_job->title());
    m_pause->setEnabled(!cancelling && !m_asking);
    m_cancel->setAccessibleName(QStringLiteral("Abbrechen: ") + m_job->title());
    m_cancel->setEnabled(!cancelling);
    setAccessibleName(m_job->title() + QStringLiteral(", ") + state());
}

/// While the total is unknown the bar is indeterminate, if animations are allowed.
void JobRow::showBar()
{
    const bool unknown = m_job->measuring.get() && !m_asking && !m_job->cancelling.get() && Theme::shared().motion();
    m_bar->setRange(0, unknown ? 0 : wholeBar);
    m_bar->setValue(static_cast<int>(m_job->fraction() * wholeBar));
    m_bar->setAccessibleName(m_job->title());
}

WaitingRow::WaitingRow(const WaitingTransfer &waiting, QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("transferWaiting"));
    setAccessibleName(QStringLiteral("Wartet: ") + waiting.title);
    auto *const line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(scaled(8));
    line->addWidget(makeMark(QStringLiteral("clock"), Token::Tertiary, this));
    auto *const title = new ElidedLabel(waiting.title, Token::Secondary, 0.92, this);
    title->setObjectName(QStringLiteral("waitingTitle"));
    line->addWidget(title, 1);
    auto *const cancel = new SymbolButton(QStringLiteral("x"), QStringLiteral("Aus der Warteschlange nehmen"),
                                          QStringLiteral("waitingCancel"), this);
    cancel->setAccessibleName(QStringLiteral("Aus der Warteschlange nehmen: ") + waiting.title);
    line->addWidget(cancel);
    connect(cancel, &QToolButton::clicked, this, &WaitingRow::cancelWanted);
}

} // namespace brellin

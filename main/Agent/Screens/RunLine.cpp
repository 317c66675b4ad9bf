#include "Agent/Screens/RunLine.h"

#include "Disk/UnreadableFolders.h"
#include "Look/Buttons.h"
#include "Look/DetailsSheet.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QProgressBar>

#include <cmath>

namespace brellin {

namespace {

constexpr int barSteps = 1000;

} // namespace

RunLine::RunLine(CleanupAgent &agent, QWidget *parent, Beside beside)
    : QWidget(parent)
    , m_agent(agent)
    , m_beside(beside)
    , m_symbol(new QLabel(this))
    , m_status(new ElidedLabel({}, Token::Secondary, 1, this, Qt::ElideRight))
    , m_detail(new ElidedLabel({}, Token::Tertiary, 0.92, this))
    , m_bar(new QProgressBar(this))
    , m_cancel(makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("agentCancel"), this))
    , m_details(makeButton(QStringLiteral("Einzelheiten"), ButtonKind::Usual, QStringLiteral("agentDetails"), this))
{
    setObjectName(QStringLiteral("agentRunLine"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_status->setObjectName(QStringLiteral("agentStatus"));
    m_detail->setObjectName(QStringLiteral("agentDetail"));
    m_bar->setAccessibleName(QStringLiteral("Fortschritt"));
    m_bar->setTextVisible(false);
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(5));
    auto *const line = new QHBoxLayout;
    line->addWidget(m_status);
    line->addWidget(m_detail, 1);
    texts->addLayout(line);
    texts->addWidget(m_bar);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(9));
    row->addWidget(m_symbol, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    row->addWidget(m_cancel);
    row->addWidget(m_details);

    connect(m_cancel, &QPushButton::clicked, this, [this] { m_agent.cancel(); });
    connect(m_details, &QPushButton::clicked, this, &RunLine::showNotSearched);
    connect(&Theme::shared(), &Theme::changed, this, &RunLine::showState);
    m_agent.running.observe(this, [this](bool) { showState(); });
    m_agent.damaged.observe(this, [this](const auto &) { showState(); });
    m_agent.status.observe(this, [this](const QString &) { showState(); });
    m_agent.detail.observe(this, [this](const QString &) { showProgress(); });
    m_agent.progress.observe(this, [this](double) { showProgress(); });
    showState();
}

void RunLine::showState()
{
    const bool running = m_agent.running.get();
    const bool bad = !running && (m_agent.lastFailure() || !m_agent.failures.get().empty());
    const QString symbol = running ? QStringLiteral("loader-circle")
                           : bad   ? QStringLiteral("triangle-alert")
                                   : QStringLiteral("shield-check");
    const Token ink = running ? Token::Accent : bad ? Token::Warning : Token::Success;
    m_symbol->setPixmap(Symbols::pixmap(symbol, scaled(16), color(ink), devicePixelRatioF()));
    m_status->setText(m_agent.status.get());
    m_bar->setVisible(running);
    m_cancel->setVisible(running);
    m_detail->setVisible(running);
    layout()->setAlignment(m_symbol, running ? Qt::AlignTop : Qt::AlignVCenter);
    m_details->setVisible(!running && !m_agent.notSearched().empty());
    setVisible(running || (!m_agent.status.get().isEmpty() && !isToldBeside()));
    showProgress();
}

void RunLine::showNotSearched()
{
    const std::vector<Location> &folders = m_agent.notSearched();
    (new DetailsSheet(unreadableText(folders), shown(folders), this))->open();
}

bool RunLine::isToldBeside() const
{
    const std::optional<Failure> &why = m_agent.lastFailure();
    return m_beside == Beside::DamageNotice && why && why->is(std::errc::illegal_byte_sequence) &&
           !m_agent.damaged.get().empty();
}

void RunLine::showProgress()
{
    m_detail->setText(m_agent.detail.get());
    const double share = m_agent.progress.get();
    // Unknown total: an indeterminate progress bar.
    m_bar->setRange(0, share > 0 ? barSteps : 0);
    m_bar->setValue(static_cast<int>(std::lround(share * barSteps)));
}

} // namespace brellin

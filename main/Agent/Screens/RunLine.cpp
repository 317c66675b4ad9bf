#include "Agent/Screens/RunLine.h"

#include "Disk/UnreadableFolders.h"
#include "Look/Buttons.h"
#include "Look/DetailsSheet.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>

#include <algorithm>
#include <cmath>
#include <set>

namespace brellin {

namespace {

constexpr int barSteps = 1000;

/// One entry of each folder that the run has put something into, in order of the steps.
std::vector<Location> arrivals(const JournalRun &run)
{
    std::vector<Location> entries;
    std::set<Location> folders;
    for (const JournalStep &step : run.steps) {
        if (step.kind != AgentProposal::Kind::Trash && step.to && folders.insert(step.to->parent_path()).second)
            entries.push_back(*step.to);
    }
    return entries;
}

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
    buildAfterwards(*row);
    row->addWidget(m_details);

    connect(m_cancel, &QPushButton::clicked, this, [this] { m_agent.cancel(); });
    connect(m_details, &QPushButton::clicked, this, &RunLine::showNotSearched);
    connect(&Theme::shared(), &Theme::changed, this, &RunLine::showState);
    m_agent.running.observe(this, [this](bool) { showState(); });
    m_agent.executedRun.observe(this, [this](const auto &) { showAfterwards(); });
    m_agent.history.observe(this, [this](const auto &) { showAfterwards(); });
    m_agent.discarded.observe(this, [this](std::size_t) { showAfterwards(); });
    m_agent.damaged.observe(this, [this](const auto &) { showState(); });
    m_agent.status.observe(this, [this](const QString &) { showState(); });
    m_agent.detail.observe(this, [this](const QString &) { showProgress(); });
    m_agent.progress.observe(this, [this](double) { showProgress(); });
    showState();
}

void RunLine::buildAfterwards(QHBoxLayout &row)
{
    m_undo = makeButton(QStringLiteral("Rückgängig"), ButtonKind::Usual, QStringLiteral("agentUndoRun"), this,
                        QStringLiteral("undo-2"));
    m_folders = makeButton({}, ButtonKind::Usual, QStringLiteral("agentShowFolders"), this);
    m_bringBack = makeButton(QStringLiteral("Zurückholen"), ButtonKind::Usual, QStringLiteral("agentBringBack"), this,
                             QStringLiteral("undo-2"));
    for (QPushButton *const button : {m_undo, m_folders, m_bringBack})
        row.addWidget(button);
    connect(m_undo, &QPushButton::clicked, this, &RunLine::undo);
    connect(m_folders, &QPushButton::clicked, this, &RunLine::chooseFolder);
    connect(m_bringBack, &QPushButton::clicked, this, [this] { m_agent.bringBack(); });
}

const JournalRun *RunLine::executed() const
{
    const std::optional<QUuid> &id = m_agent.executedRun.get();
    const std::vector<JournalRun> &runs = m_agent.history.get();
    const auto run = id ? std::ranges::find(runs, *id, &JournalRun::id) : runs.end();
    return run == runs.end() || run->undone ? nullptr : &*run;
}

void RunLine::showAfterwards()
{
    const bool idle = !m_agent.running.get();
    const JournalRun *const run = executed();
    const std::size_t folders = run ? arrivals(*run).size() : 0;
    m_undo->setVisible(idle && run);
    m_folders->setVisible(idle && folders > 0);
    m_folders->setText(folders > 1 ? QStringLiteral("Ordner zeigen …") : QStringLiteral("Ordner zeigen"));
    m_bringBack->setVisible(idle && !run && m_agent.discarded.get() > 0);
}

void RunLine::undo()
{
    if (const JournalRun *const run = executed())
        m_agent.undo(QUuid(run->id));
}

/// A single folder is shown at once.
void RunLine::chooseFolder()
{
    const JournalRun *const run = executed();
    const std::vector<Location> entries = run ? arrivals(*run) : std::vector<Location>();
    if (entries.size() == 1)
        Q_EMIT showRequested(entries.front());
    if (entries.size() < 2)
        return;
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("agentFolderMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const Location &entry : entries)
        menu->addAction(shown(entry.parent_path()).replace(u'&', QStringLiteral("&&")), this,
                        [this, entry] { Q_EMIT showRequested(entry); });
    menu->popup(m_folders->mapToGlobal(QPoint(0, m_folders->height())));
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
    showAfterwards();
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

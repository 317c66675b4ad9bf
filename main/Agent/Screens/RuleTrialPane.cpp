#include "Agent/Screens/RuleTrialPane.h"

#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/EntryPicture.h"
#include "Agent/Screens/FolderField.h"
#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>

namespace brellin {

namespace {

constexpr std::size_t mostFiles = 5;

QVBoxLayout *column(QVBoxLayout *into, int spacing)
{
    auto *const made = new QVBoxLayout;
    made->setSpacing(scaled(spacing));
    into->addLayout(made);
    return made;
}

} // namespace

RuleTrialPane::RuleTrialPane(const AgentPorts &ports, QWidget *parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_trial(ports.services.forRules())
{
    setObjectName(QStringLiteral("ruleTrial"));
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(scaled(8));
    m_warnings = column(whole, 6);
    m_summary = makeBody(QStringLiteral("Diese Regel würde jetzt …"), this);
    m_summary->setObjectName(QStringLiteral("trialSummary"));
    whole->addWidget(m_summary);
    m_files = column(whole, 6);
    buildExplanation();
    whole->addStretch(1);
    m_trial.outcome.observe(this, [this](const auto &) { showOutcome(); });
    m_trial.running.observe(this, [this](bool) { showOutcome(); });
    m_trial.warnings.observe(this, [this](const auto &) { showWarnings(); });
    m_trial.explanation.observe(this, [this](const auto &) { showExplanation(); });
    m_trial.explained.observe(this, [this](const auto &) { showExplanation(); });
}

void RuleTrialPane::buildExplanation()
{
    auto *const whole = static_cast<QVBoxLayout *>(layout());
    whole->addSpacing(scaled(10));
    whole->addWidget(new TextLabel(QStringLiteral("Warum nicht diese Datei?"), Token::Text, 1, QFont::DemiBold, this));
    m_choose = makeButton(QStringLiteral("Datei wählen …"), ButtonKind::Usual, QStringLiteral("trialChoose"), this);
    whole->addWidget(m_choose);
    m_explanation = column(whole, 4);
    connect(m_choose, &QPushButton::clicked, this, [this] {
        const QString source = m_edited.sourcePath;
        const Location start = source.startsWith(u'/') ? locationFromText(source) : m_ports.services.folders.home;
        chooseFile(this, QStringLiteral("Welche Datei soll geprüft werden?"), start,
                   [this](const Location &file) { explain(file); });
    });
}

void RuleTrialPane::setRule(const CleanupRule &edited)
{
    m_edited = edited;
    m_trial.setRule(edited, m_ports.agent.rules.get(), m_ports.agent.profiles.get());
    showOutcome();
}

void RuleTrialPane::explain(const Location &file)
{
    m_trial.explain(file);
}

void RuleTrialPane::clear(QVBoxLayout *column)
{
    while (QLayoutItem *const item = column->takeAt(0)) {
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
}

void RuleTrialPane::addLine(QVBoxLayout *column, const QString &symbol, Token ink, const QString &text)
{
    auto *const held = new QWidget(this);
    auto *const row = new QHBoxLayout(held);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(6));
    auto *const mark = new QLabel(held);
    mark->setPixmap(Symbols::pixmap(symbol, scaled(14), color(ink), devicePixelRatioF()));
    row->addWidget(mark, 0, Qt::AlignTop);
    TextLabel *const label = makeSecondary(text, held);
    label->setToken(ink == Token::Success ? Token::Secondary : ink);
    row->addWidget(label, 1);
    column->addWidget(held);
}

void RuleTrialPane::showWarnings()
{
    clear(m_warnings);
    for (const RuleWarning warning : m_trial.warnings.get())
        addLine(m_warnings, QStringLiteral("triangle-alert"), Token::Warning, text(warning));
}

void RuleTrialPane::showOutcome()
{
    const bool stale = m_trial.running.get();
    const std::optional<TrialOutcome> &outcome = m_trial.outcome.get();
    m_summary->setToken(stale ? Token::Tertiary : Token::Text);
    m_summary->setText(outcome ? outcome->text(m_edited.action) : QStringLiteral("Diese Regel würde jetzt …"));
    if (stale || !outcome)
        return;
    clear(m_files);
    std::size_t shownFiles = 0;
    for (const TrialFile &file : outcome->files) {
        if (shownFiles++ == mostFiles)
            break;
        m_files->addWidget(new Separator(Qt::Horizontal, this));
        m_files->addWidget(fileRow(file));
    }
    const std::int64_t more = outcome->count - static_cast<std::int64_t>(std::min(outcome->files.size(), mostFiles));
    if (more > 0)
        m_files->addWidget(makeSecondary(
            QStringLiteral("und ") + counted(more, QStringLiteral("weitere"), QStringLiteral("weitere")), this));
}

QWidget *RuleTrialPane::fileRow(const TrialFile &file)
{
    auto *const held = new QWidget(this);
    held->setObjectName(QStringLiteral("trialFile"));
    auto *const row = new QHBoxLayout(held);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(10));
    auto *const picture = new QLabel(held);
    picture->setPixmap(entryPixmap(m_ports, file.source, EntryShape::File, scaled(26), devicePixelRatioF()));
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(new ElidedLabel(shownName(file.source), Token::Text, 1, held));
    const Location &home = m_ports.services.folders.home;
    QString target = QStringLiteral("→ Papierkorb");
    if (file.destination)
        target =
            QStringLiteral("→ ") + (file.kind == AgentProposal::Kind::Rename ? shownName(*file.destination)
                                    : file.chosenByModel ? crumbText(*file.destination, home) + QStringLiteral(" › …")
                                                         : crumbText(file.destination->parent_path(), home));
    texts->addWidget(new ElidedLabel(target, Token::Secondary, 0.92, held));
    row->addWidget(picture);
    row->addLayout(texts, 1);
    return held;
}

void RuleTrialPane::showExplanation()
{
    clear(m_explanation);
    if (m_trial.explained.get())
        m_choose->setText(
            m_choose->fontMetrics().elidedText(shownName(*m_trial.explained.get()), Qt::ElideMiddle, scaled(220)));
    const std::optional<RuleExplanation> &found = m_trial.explanation.get();
    if (!found)
        return;
    const bool takes = found->verdict == RuleVerdict::Takes;
    addLine(m_explanation, takes ? QStringLiteral("check") : QStringLiteral("x"),
            takes ? Token::Success : Token::Danger, found->text());
    for (const ConditionOutcome &one : found->conditions)
        addLine(m_explanation, one.lets() ? QStringLiteral("check") : QStringLiteral("x"),
                one.lets() ? Token::Success : Token::Danger, one.text());
}

} // namespace brellin

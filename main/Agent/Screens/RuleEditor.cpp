#include "Agent/Screens/RuleEditor.h"

#include "Agent/Screens/ConditionRow.h"
#include "Agent/Screens/DiscardQuestion.h"
#include "Agent/Screens/FolderField.h"
#include "Agent/Screens/NoticeBar.h"
#include "Agent/Screens/RuleTrialPane.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>

#include <algorithm>

namespace brellin {

namespace {

QString hintFor(RuleAction action)
{
    switch (action) {
    case RuleAction::Move:
    case RuleAction::Copy:
        return QStringLiteral("Platzhalter im Pfad: {Jahr} {Monat} {Tag} {Kategorie} – z. B. …/Bilder/{Jahr}-{Monat}");
    case RuleAction::Rename:
        return QStringLiteral(
            "Platzhalter: {Datum} {Jahr} {Monat} {Tag} {Name} (bereinigt) {Kategorie} – Endung bleibt "
            "erhalten.");
    case RuleAction::Trash:
        return QStringLiteral("Dateien kommen in den Papierkorb (nicht endgültig gelöscht).");
    case RuleAction::AiSort:
        return QStringLiteral(
            "Die KI wählt darin einen passenden Unterordner (z. B. „Rechnungen“, „Verträge“) oder legt "
            "einen an.");
    }
    return {};
}

bool isStored(const CleanupAgent &agent, const QUuid &rule)
{
    return std::ranges::find(agent.rules.get(), rule, &CleanupRule::id) != agent.rules.get().end();
}

} // namespace

RuleEditor::RuleEditor(const AgentPorts &ports, const CleanupRule &rule, Done done, QWidget *window)
    : SheetFrame(isStored(ports.agent, rule.id) ? QStringLiteral("Regel bearbeiten") : QStringLiteral("Neue Regel"), {},
                 {900, 674}, window)
    , m_ports(ports)
    , m_rule(rule)
    , m_done(std::move(done))
    , m_problem(new NoticeBar({}, QStringLiteral("ruleProblem"), this))
{
    setObjectName(QStringLiteral("ruleEditor"));
    content()->addWidget(m_problem);
    content()->addWidget(makeHeading(QStringLiteral("Name"), this));
    m_name = new QLineEdit(rule.name, this);
    m_name->setObjectName(QStringLiteral("ruleName"));
    m_name->setAccessibleName(QStringLiteral("Name"));
    content()->addWidget(m_name);
    buildSource();
    buildConditions();
    buildAction();
    content()->addStretch(1);
    m_trial = new RuleTrialPane(m_ports, this); // created last, so that Tab reaches it after the fields
    side(316)->addWidget(m_trial);
    buildButtons();
    connect(m_name, &QLineEdit::textChanged, this, &RuleEditor::changed);
    m_opened = edited();
    changed();
}

void RuleEditor::buildSource()
{
    content()->addWidget(makeHeading(QStringLiteral("Ordner"), this));
    m_source = new FolderField(QStringLiteral("Ordner"),
                               {.purpose = QStringLiteral("ruleSource"),
                                .title = QStringLiteral("In welchem Ordner soll die Regel suchen?"),
                                .start = {},
                                .use = FolderQuestion::Use::Write},
                               m_ports.askForFolder, m_ports.services.folders.home, QStringLiteral("ruleSource"), this);
    m_source->setPath(m_rule.sourcePath);
    m_subfolders = new QCheckBox(QStringLiteral("Auch Unterordner durchsuchen"), this);
    m_subfolders->setObjectName(QStringLiteral("ruleSubfolders"));
    m_subfolders->setChecked(m_rule.includeSubfolders);
    content()->addWidget(m_source);
    content()->addWidget(m_subfolders);
    connect(m_source, &FolderField::changed, this, &RuleEditor::changed);
    connect(m_subfolders, &QCheckBox::toggled, this, &RuleEditor::changed);
}

void RuleEditor::buildConditions()
{
    content()->addSpacing(scaled(4));
    content()->addWidget(makeHeading(QStringLiteral("Wenn … (alle Bedingungen müssen passen)"), this));
    m_noCondition = makeSecondary(QStringLiteral("Ohne Bedingung gilt die Regel für alle Dateien im Ordner."), this);
    content()->addWidget(m_noCondition);
    m_conditionRows = new QVBoxLayout;
    m_conditionRows->setSpacing(scaled(6));
    content()->addLayout(m_conditionRows);
    for (const RuleCondition &condition : m_rule.conditions)
        addCondition(condition);
    QPushButton *const add = makeButton(QStringLiteral("Bedingung hinzufügen"), ButtonKind::Link,
                                        QStringLiteral("ruleAddCondition"), this, QStringLiteral("plus"));
    content()->addWidget(add, 0, Qt::AlignLeft);
    connect(add, &QPushButton::clicked, this, [this] {
        addCondition({});
        m_conditions.back()->focusValue();
        changed();
    });
}

void RuleEditor::addCondition(const RuleCondition &condition)
{
    auto *const row = new ConditionRow(condition, this);
    m_conditions.push_back(row);
    m_conditionRows->addWidget(row);
    connect(row, &ConditionRow::changed, this, &RuleEditor::changed);
    connect(row, &ConditionRow::removeRequested, this, [this, row] {
        std::erase(m_conditions, row);
        row->hide();
        row->deleteLater();
        changed();
    });
}

void RuleEditor::buildAction()
{
    content()->addWidget(makeHeading(QStringLiteral("Dann"), this));
    m_action = new QComboBox(this);
    m_action->setObjectName(QStringLiteral("ruleAction"));
    m_action->setAccessibleName(QStringLiteral("Was mit den Dateien geschieht"));
    for (const RuleAction action : ruleActions)
        m_action->addItem(title(action));
    m_action->setCurrentIndex(static_cast<int>(m_rule.action));
    m_target = new FolderField(QStringLiteral("Zielordner"),
                               {.purpose = QStringLiteral("ruleTarget"),
                                .title = QStringLiteral("Wohin sollen die Dateien?"),
                                .start = {},
                                .use = FolderQuestion::Use::Write},
                               m_ports.askForFolder, m_ports.services.folders.home, QStringLiteral("ruleTarget"), this);
    m_target->setPath(m_rule.targetPath);
    m_target->setPlaceholder(QStringLiteral("~/Bilder/{Jahr}-{Monat}"));
    m_pattern = new QLineEdit(m_rule.renamePattern, this);
    m_pattern->setObjectName(QStringLiteral("rulePattern"));
    m_pattern->setAccessibleName(QStringLiteral("Neuer Name"));
    m_hint = makeSecondary({}, this);
    m_hint->setObjectName(QStringLiteral("ruleHint"));
    m_automatic = new QCheckBox(QStringLiteral("Automatisch ausführen (ohne Nachfrage)"), this);
    m_automatic->setObjectName(QStringLiteral("ruleAutomatic"));
    m_automatic->setChecked(m_rule.automatic);
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(8));
    row->addWidget(m_action);
    row->addWidget(m_target, 1);
    row->addWidget(m_pattern, 1);
    content()->addLayout(row);
    content()->addWidget(m_hint);
    content()->addSpacing(scaled(4));
    content()->addWidget(m_automatic);
    connect(m_action, &QComboBox::currentIndexChanged, this, &RuleEditor::changed);
    connect(m_target, &FolderField::changed, this, &RuleEditor::changed);
    connect(m_pattern, &QLineEdit::textChanged, this, &RuleEditor::changed);
    connect(m_automatic, &QCheckBox::toggled, this, &RuleEditor::changed);
}

void RuleEditor::buildButtons()
{
    QPushButton *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("ruleCancel"), this);
    QPushButton *const confirm =
        makeButton(QStringLiteral("Sichern"), ButtonKind::Primary, QStringLiteral("ruleSave"), this);
    buttons()->addWidget(cancel);
    buttons()->addWidget(confirm);
    connect(cancel, &QPushButton::clicked, this, &RuleEditor::escape);
    connect(confirm, &QPushButton::clicked, this, &RuleEditor::save);
}

CleanupRule RuleEditor::edited() const
{
    CleanupRule copy = m_rule;
    copy.name = m_name->text().trimmed();
    copy.sourcePath = m_source->path();
    copy.includeSubfolders = m_subfolders->isChecked();
    copy.conditions.clear();
    for (const ConditionRow *const row : m_conditions)
        copy.conditions.push_back(row->condition());
    copy.action = ruleActions[static_cast<std::size_t>(m_action->currentIndex())];
    copy.targetPath = copy.action == RuleAction::Trash ? QString() : m_target->path();
    copy.renamePattern = m_pattern->text();
    copy.automatic = m_automatic->isChecked();
    return copy;
}

void RuleEditor::showAction()
{
    const CleanupRule now = edited();
    m_target->setVisible(now.action != RuleAction::Trash && now.action != RuleAction::Rename);
    m_pattern->setVisible(now.action == RuleAction::Rename);
    m_hint->setText(hintFor(now.action));
    m_noCondition->setVisible(now.conditions.empty());
}

void RuleEditor::changed()
{
    showAction();
    m_trial->setRule(edited());
}

void RuleEditor::escape()
{
    if (edited() == m_opened)
        return close();
    YesNoSheet *const question = makeDiscardQuestion(
        QStringLiteral("Was du an der Regel „%1“ geändert hast, geht verloren.").arg(m_opened.name), this);
    connect(question, &YesNoSheet::accepted, this, [this] { close(); });
    question->open();
}

void RuleEditor::save()
{
    CleanupRule copy = edited();
    if (copy.name.isEmpty())
        copy.name = CleanupRule().name;
    if (const Result<void> saved = m_done(copy); !saved)
        return m_problem->tell(saved.error().message, Token::Danger, Token::DangerSoft);
    close();
}

} // namespace brellin

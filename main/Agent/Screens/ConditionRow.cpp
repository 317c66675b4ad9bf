#include "Agent/Screens/ConditionRow.h"

#include "Look/Buttons.h"
#include "Look/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>

namespace brellin {

ConditionRow::ConditionRow(const RuleCondition &condition, QWidget *parent)
    : QWidget(parent)
    , m_id(condition.id)
    , m_kind(new QComboBox(this))
    , m_value(new QLineEdit(condition.value, this))
{
    m_kind->setObjectName(QStringLiteral("conditionKind"));
    m_kind->setAccessibleName(QStringLiteral("Art der Bedingung"));
    for (const ConditionKind kind : conditionKinds)
        m_kind->addItem(title(kind));
    m_kind->setCurrentIndex(static_cast<int>(condition.kind));
    m_kind->setFixedWidth(scaled(160));
    m_value->setObjectName(QStringLiteral("conditionValue"));
    auto *const removal = new SymbolButton(QStringLiteral("circle-minus"), QStringLiteral("Bedingung entfernen"),
                                           QStringLiteral("conditionRemove"), this, Token::Secondary);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(8));
    row->addWidget(m_kind);
    row->addWidget(m_value, 1);
    row->addWidget(removal);
    showPlaceholder();
    connect(m_kind, &QComboBox::currentIndexChanged, this, [this] {
        showPlaceholder();
        Q_EMIT changed();
    });
    connect(m_value, &QLineEdit::textChanged, this, &ConditionRow::changed);
    connect(removal, &QToolButton::clicked, this, &ConditionRow::removeRequested);
}

RuleCondition ConditionRow::condition() const
{
    return {m_id, conditionKinds[static_cast<std::size_t>(m_kind->currentIndex())], m_value->text()};
}

void ConditionRow::focusValue()
{
    m_value->setFocus();
}

void ConditionRow::showPlaceholder()
{
    const RuleCondition now = condition();
    m_value->setPlaceholderText(placeholder(now.kind));
    m_value->setAccessibleName(title(now.kind));
}

} // namespace brellin

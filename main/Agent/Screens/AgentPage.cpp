#include "Agent/Screens/AgentPage.h"

#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QScrollArea>

namespace brellin {

AgentPage::AgentPage(const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_actions(new QHBoxLayout)
    , m_body(new QVBoxLayout)
{
    auto *const back = new SymbolButton(QStringLiteral("chevron-left"), QStringLiteral("Zurück zum Aufräum-Agenten"),
                                        QStringLiteral("agentBack"), this, Token::Secondary);
    connect(back, &QToolButton::clicked, this, &AgentPage::backRequested);
    auto *const head = new QHBoxLayout;
    head->setContentsMargins(scaled(30), scaled(22), scaled(30), 0);
    head->setSpacing(scaled(8));
    head->addWidget(back);
    head->addWidget(makeTitle(title, this));
    head->addStretch(1);
    head->addLayout(m_actions);
    m_actions->setSpacing(scaled(8));
    m_body->setSpacing(scaled(8));
    m_body->setContentsMargins(0, scaled(12), 0, 0);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(head);
    column->addLayout(m_body, 1);
}

ComingPage::ComingPage(const QString &title, const QString &symbol, const QString &text, QWidget *parent)
    : AgentPage(title, parent)
{
    body()->addWidget(new EmptyState(symbol, QStringLiteral("Diese Funktion kommt noch"), text, this), 1);
}

QVBoxLayout *addScrollingColumn(QVBoxLayout *body, QWidget *page, const QString &objectName, int width)
{
    auto *const inner = new QWidget;
    inner->setMaximumWidth(scaled(width));
    auto *const column = new QVBoxLayout(inner);
    column->setContentsMargins(scaled(16), 0, scaled(16), scaled(20));
    column->setSpacing(0);
    auto *const area = new QScrollArea(page);
    area->setObjectName(objectName);
    area->setWidget(inner);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->viewport()->setAutoFillBackground(false);
    inner->setAutoFillBackground(false);
    body->addWidget(area, 1);
    return column;
}

void padCard(Card &card)
{
    const int side = shadowReach() + scaled(14);
    const int above = shadowReach() + scaled(11);
    card.content()->setContentsMargins(side, above, side, above);
}

} // namespace brellin

#include "Agent/Screens/GuidePage.h"

#include "Agent/Screens/GuideTexts.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QScrollArea>

namespace brellin {

namespace {

QWidget *sectionCard(const GuideSection &section, QWidget *parent)
{
    auto *const card = new Card(parent);
    padCard(*card);
    auto *const symbol = new QLabel(card);
    const auto draw = [symbol, name = section.symbol] {
        symbol->setPixmap(Symbols::pixmap(name, scaled(20), color(Token::Accent), symbol->devicePixelRatioF()));
    };
    draw();
    QObject::connect(&Theme::shared(), &Theme::changed, symbol, draw);
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(4));
    texts->addWidget(new TextLabel(section.title, Token::Text, 1.08, QFont::DemiBold, card));
    TextLabel *const text = makeBody(section.text, card);
    text->setToken(Token::Secondary);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    texts->addWidget(text);
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(14));
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    card->content()->addLayout(row);
    return card;
}

} // namespace

GuidePage::GuidePage(QWidget *parent) : AgentPage(QStringLiteral("Anleitung: Aufräum-Agent"), parent)
{
    setObjectName(QStringLiteral("agentGuidePage"));
    TextLabel *const subtitle = makeSecondary(QStringLiteral("Was er kann und wie du ihn bedienst"), this);
    subtitle->setContentsMargins(scaled(68), 0, 0, 0);
    body()->setContentsMargins(0, 0, 0, 0);
    body()->addWidget(subtitle);
    QVBoxLayout *const column = addScrollingColumn(body(), this, QStringLiteral("agentGuideScroll"), 780);
    for (const GuideSection &section : guideSections())
        column->addWidget(sectionCard(section, this));
    column->addStretch(1);
}

} // namespace brellin

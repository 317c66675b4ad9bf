#include "PhotoViewer/Screens/EntryCard.h"

#include "Features/Screens/DocumentPicture.h"
#include "Features/Screens/PreviewFactList.h"
#include "Features/Screens/PreviewStack.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr double symbolSide = 128;
constexpr double stackSide = 280;
constexpr double textWidth = 260;

} // namespace

EntryCard::EntryCard(ThumbnailImages *thumbnails, QWidget *parent)
    : QWidget(parent)
    , m_symbol(new QLabel(this))
    , m_stack(new PreviewStack(thumbnails, this))
    , m_name(new TextLabel({}, Token::Text, 1.3, QFont::DemiBold, this))
    , m_summary(new TextLabel({}, Token::Secondary, 1, QFont::Normal, this))
    , m_remark(new TextLabel({}, Token::Secondary, 1, QFont::Normal, this))
    , m_facts(new PreviewFactList(this))
{
    m_name->setObjectName(QStringLiteral("entryCardName"));
    m_summary->setObjectName(QStringLiteral("entryCardSummary"));
    m_remark->setObjectName(QStringLiteral("entryCardRemark"));
    auto *const column = new QVBoxLayout(this);
    column->setSpacing(scaled(6));
    column->addStretch(2);
    m_stack->setFixedSize(scaled(stackSide), scaled(stackSide));
    column->addWidget(m_stack, 0, Qt::AlignHCenter);
    m_stack->hide();
    for (QLabel *const label : std::initializer_list<QLabel *>{m_symbol, m_name, m_summary, m_remark}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        column->addWidget(label);
    }
    m_facts->setFixedWidth(scaled(textWidth));
    column->addSpacing(scaled(12));
    column->addWidget(m_facts, 0, Qt::AlignHCenter);
    column->addStretch(3);
    connect(&Theme::shared(), &Theme::changed, this, &EntryCard::drawSymbol);
}

void EntryCard::setContent(const PreviewContent &content)
{
    m_content = content;
    m_stack->hide();
    m_symbol->show();
    m_name->setText(content.name);
    m_summary->setText(content.summary);
    m_facts->setFacts(content.facts);
    const auto *const nothing = std::get_if<PreviewNothing>(&content.body);
    setRemark(content.state == PreviewContent::State::Failed ? content.failure : nothing ? nothing->reason : QString());
    drawSymbol();
}

void EntryCard::setSummary(const PreviewSummary &summary)
{
    m_name->setText(summaryTitle(summary));
    m_summary->setText(summarySize(summary));
    m_facts->setFacts(summaryFacts(summary));
    setRemark({});
    m_stack->setEntries(summary.onTop);
    m_symbol->hide();
    m_stack->show();
}

void EntryCard::setRemark(const QString &remark)
{
    m_remark->setText(remark);
    m_remark->setVisible(!remark.isEmpty());
}

void EntryCard::drawSymbol()
{
    const EntryIcons::Mark mark = m_content.isLink ? EntryIcons::Mark::Link : EntryIcons::Mark::None;
    const double side = scaled(symbolSide);
    m_symbol->setPixmap(m_content.isFolder
                            ? EntryIcons::folder(side, devicePixelRatioF(), std::nullopt, mark)
                            : documentPicture(m_content.entry.filename().native(), side, devicePixelRatioF(), mark));
}

} // namespace brellin

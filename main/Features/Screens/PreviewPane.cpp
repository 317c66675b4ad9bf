#include "Features/Screens/PreviewPane.h"

#include "Features/PreviewLoader.h"
#include "Features/Screens/PreviewCard.h"
#include "Features/Screens/PreviewFactList.h"
#include "Features/Screens/PreviewHint.h"
#include "Features/Screens/PreviewStack.h"
#include "Features/Screens/PreviewTagRow.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr double paneWidth = 262;
constexpr double margin = 18;

/// Inserts break opportunities after separators, and anywhere else if needed, since a name may be one long word.
QString breakable(const QString &name)
{
    constexpr qsizetype longestPart = 22;
    QString result;
    qsizetype part = 0;
    for (const QChar letter : name) {
        result += letter;
        part = letter.isSpace() ? 0 : part + 1;
        const bool separates = letter == u'_' || letter == u'-' || letter == u'.';
        if ((separates && part > 3) || (part >= longestPart && !letter.isSurrogate())) {
            result += QChar(0x200B);
            part = 0;
        }
    }
    return result;
}

} // namespace

PreviewPane::PreviewPane(PreviewLoader &loader, QWidget *parent, ThumbnailImages *thumbnails)
    : QScrollArea(parent)
    , m_loader(loader)
    , m_line(new Separator(Qt::Vertical, this))
    , m_whole(new QWidget(this))
    , m_empty(new EmptyState(QStringLiteral("eye"), QStringLiteral("Nichts ausgewählt"), {}, m_whole))
    , m_card(new PreviewCard(m_whole))
    , m_several(new Card(m_whole))
    , m_stack(new PreviewStack(thumbnails, m_several))
    , m_pages(new QWidget(m_whole))
    , m_name(new TextLabel({}, Token::Text, 1.08, QFont::DemiBold, m_whole))
    , m_summary(new TextLabel({}, Token::Secondary, 1, QFont::Normal, m_whole))
    , m_facts(new PreviewFactList(m_whole))
    , m_tags(new PreviewTagRow(m_whole))
    , m_hint(new PreviewHint(QStringLiteral("wand.and.sparkles"), m_whole))
{
    setObjectName(QStringLiteral("vorschau"));
    setAccessibleName(QStringLiteral("Vorschaufenster"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // its children take the focus
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setViewportMargins(1, 0, 0, 0);
    setMinimumWidth(scaled(200));
    m_name->setObjectName(QStringLiteral("vorschau.name"));
    m_summary->setObjectName(QStringLiteral("vorschau.art"));
    m_hint->setObjectName(QStringLiteral("vorschau.hinweis"));
    m_name->setWordWrap(true);
    m_summary->setWordWrap(true);
    m_hint->hide();

    auto *const outer = new QVBoxLayout(m_whole);
    const int beside = scaled(margin);
    const int shadow = shadowReach();
    outer->setContentsMargins(0, beside - shadow, 0, beside);
    outer->setSpacing(0);
    auto *const cardRow = new QVBoxLayout;
    cardRow->setContentsMargins(beside - shadow, 0, beside - shadow, 0);
    cardRow->addWidget(m_card);
    cardRow->addWidget(m_several);
    m_several->content()->addWidget(m_stack);
    outer->addLayout(cardRow);
    auto *const column = new QVBoxLayout;
    column->setContentsMargins(beside, 0, beside, 0);
    column->setSpacing(0);
    buildPages(*column);
    column->addWidget(m_name);
    column->addSpacing(scaled(3));
    column->addWidget(m_summary);
    column->addSpacing(scaled(16));
    column->addWidget(m_facts);
    column->addSpacing(scaled(14));
    column->addWidget(m_tags);
    column->addSpacing(scaled(12));
    column->addWidget(m_hint);
    outer->addLayout(column);
    outer->addWidget(m_empty, 1);
    outer->addStretch(1);
    setWidget(m_whole);

    connect(m_card, &PreviewCard::sideWanted, this, [this](int side) { m_loader.setSide(side); });
    connect(m_tags, &PreviewTagRow::toggled, this, &PreviewPane::tagToggled);
    m_loader.content.observe(this, [this](const PreviewContent &content) { showContent(content); });
    showContent(m_loader.content.get());
}

void PreviewPane::buildPages(QVBoxLayout &column)
{
    auto *const row = new QHBoxLayout(m_pages);
    row->setContentsMargins(0, 0, 0, scaled(8));
    m_back = new SymbolButton(QStringLiteral("chevron-left"), QStringLiteral("Vorige Seite"),
                              QStringLiteral("vorschau.vorigeSeite"), m_pages);
    m_forward = new SymbolButton(QStringLiteral("chevron-right"), QStringLiteral("Nächste Seite"),
                                 QStringLiteral("vorschau.naechsteSeite"), m_pages);
    m_page = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, m_pages);
    m_page->setObjectName(QStringLiteral("vorschau.seite"));
    row->addStretch(1);
    row->addWidget(m_back);
    row->addWidget(m_page);
    row->addWidget(m_forward);
    row->addStretch(1);
    column.addWidget(m_pages);
    const auto turn = [this](int by) {
        if (const auto *page = std::get_if<PreviewPage>(&m_loader.content.get().body))
            m_loader.showPage(page->page + by);
    };
    connect(m_back, &QAbstractButton::clicked, this, [turn] { turn(-1); });
    connect(m_forward, &QAbstractButton::clicked, this, [turn] { turn(1); });
}

void PreviewPane::showContent(const PreviewContent &content)
{
    showParts();
    showPages(content);
    if (content.state == PreviewContent::State::Empty)
        return;
    m_card->setContent(content);
    showTexts(content.name, content.summary, content.facts);
    m_name->setToolTip(shown(content.entry));
}

void PreviewPane::showTexts(const QString &name, const QString &summary, const std::vector<PreviewFact> &facts)
{
    m_name->setText(breakable(name));
    m_name->setAccessibleName(name);
    m_summary->setText(summary);
    m_facts->setFacts(facts);
}

/// Shows the widgets for one entry, several or none.
void PreviewPane::showParts()
{
    const bool one = m_loader.content.get().state != PreviewContent::State::Empty;
    const bool several = !one && m_summaryShown;
    for (QWidget *part : std::initializer_list<QWidget *>{m_card, m_tags})
        part->setVisible(one);
    for (QWidget *part : std::initializer_list<QWidget *>{m_name, m_summary, m_facts})
        part->setVisible(one || several);
    m_several->setVisible(several);
    m_empty->setVisible(!one && !several);
    m_hint->setVisible(one && !m_hint->accessibleName().isEmpty());
}

void PreviewPane::setSummary(const std::optional<PreviewSummary> &summary)
{
    m_summaryShown = summary;
    showParts();
    if (!summary || m_loader.content.get().state != PreviewContent::State::Empty)
        return;
    m_stack->setEntries(summary->onTop);
    showTexts(summaryTitle(*summary), summarySize(*summary), summaryFacts(*summary));
    m_name->setToolTip({});
}

void PreviewPane::showPages(const PreviewContent &content)
{
    const auto *page = std::get_if<PreviewPage>(&content.body);
    m_pages->setVisible(page && page->pages > 1);
    if (!page)
        return;
    m_page->setText(QStringLiteral("Seite %1 von %2").arg(page->page + 1).arg(page->pages));
    m_back->setEnabled(page->page > 0);
    m_forward->setEnabled(page->page + 1 < page->pages);
}

void PreviewPane::setTags(const QStringList &tags)
{
    m_tags->setTags(tags);
}

void PreviewPane::setHint(const QString &hint)
{
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty() && m_loader.content.get().state != PreviewContent::State::Empty);
}

QSize PreviewPane::sizeHint() const
{
    return {scaled(paneWidth), scaled(560)};
}

void PreviewPane::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    m_line->setGeometry(0, 0, 1, height());
}

} // namespace brellin

#include "PhotoViewer/Screens/PageRow.h"

#include "Features/Screens/PreviewBodies.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>

namespace brellin {

PageRow::PageRow(QWidget *parent)
    : QWidget(parent)
    , m_back(new SymbolButton(QStringLiteral("chevron-left"), QStringLiteral("Vorige Seite (Bild ↑)"),
                              QStringLiteral("largePageBack"), this))
    , m_page(new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, this))
    , m_on(new SymbolButton(QStringLiteral("chevron-right"), QStringLiteral("Nächste Seite (Bild ↓)"),
                            QStringLiteral("largePageOn"), this))
    , m_remark(new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, this))
{
    m_page->setObjectName(QStringLiteral("largePage"));
    m_remark->setObjectName(QStringLiteral("largeRemark"));
    m_back->setFocusPolicy(Qt::TabFocus);
    m_on->setFocusPolicy(Qt::TabFocus);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(14), scaled(6), scaled(14), scaled(6));
    row->addStretch(1);
    for (QWidget *const one : std::initializer_list<QWidget *>{m_back, m_page, m_on, m_remark})
        row->addWidget(one);
    row->addStretch(1);
    connect(m_back, &QAbstractButton::clicked, this, &PageRow::backWanted);
    connect(m_on, &QAbstractButton::clicked, this, &PageRow::onWanted);
}

void PageRow::showContent(const PreviewContent &content)
{
    const auto *const page = std::get_if<PreviewPage>(&content.body);
    const bool several = page && page->pages > 1;
    for (QWidget *const one : std::initializer_list<QWidget *>{m_back, m_page, m_on})
        one->setVisible(several);
    m_remark->setText(remarkOf(content.body));
    m_remark->setVisible(!m_remark->text().isEmpty());
    if (!page)
        return;
    m_page->setText(QStringLiteral("Seite %1 von %2").arg(page->page + 1).arg(page->pages));
    m_back->setEnabled(page->page > 0);
    m_on->setEnabled(page->page + 1 < page->pages);
}

} // namespace brellin

#include "Features/Screens/PreviewFactList.h"

#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QGridLayout>

namespace brellin {

PreviewFactList::PreviewFactList(QWidget *parent) : QWidget(parent), m_grid(new QGridLayout(this))
{
    setObjectName(QStringLiteral("vorschau.angaben"));
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(scaled(10));
    m_grid->setVerticalSpacing(scaled(6));
    m_grid->setColumnMinimumWidth(0, scaled(68));
    m_grid->setColumnStretch(1, 1);
}

void PreviewFactList::addRow()
{
    const int number = static_cast<int>(m_rows.size());
    auto *const label = new TextLabel({}, Token::Secondary, 1, QFont::Normal, this);
    auto *const value = new TextLabel({}, Token::Text, 1, QFont::Normal, this);
    value->setWordWrap(true);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value->setObjectName(u"vorschau.angabe.%1"_qs.arg(number));
    m_grid->addWidget(label, number, 0, Qt::AlignTop | Qt::AlignLeft);
    m_grid->addWidget(value, number, 1, Qt::AlignTop);
    m_rows.push_back({label, value});
}

void PreviewFactList::setFacts(const std::vector<PreviewFact> &facts)
{
    while (m_rows.size() < facts.size())
        addRow();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const bool used = i < facts.size();
        m_rows[i].label->setVisible(used);
        m_rows[i].value->setVisible(used);
        if (!used)
            continue;
        m_rows[i].label->setText(facts[i].label);
        m_rows[i].value->setText(facts[i].value);
        m_rows[i].value->setToolTip(facts[i].whole);
        m_rows[i].value->setAccessibleName(facts[i].label + u": "_qs + facts[i].value);
    }
}

} // namespace brellin

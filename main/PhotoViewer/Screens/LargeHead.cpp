#include "PhotoViewer/Screens/LargeHead.h"

#include "Base/German.h"
#include "Features/PreviewContent.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

namespace brellin {

LargeHead::LargeHead(QWidget *parent) : QWidget(parent)
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(10), scaled(8), scaled(14), scaled(8));
    row->setSpacing(scaled(6));
    add(*row, QStringLiteral("arrow-left"), QStringLiteral("Zurück zur Liste (Esc)"), QStringLiteral("largeClose"),
        &LargeHead::left);
    addTitles(*row);
    addTools(*row);
}

SymbolButton *LargeHead::add(QHBoxLayout &row, const QString &symbol, const QString &title, const QString &name,
                             void (LargeHead::*clicked)())
{
    auto *const button = new SymbolButton(symbol, title, name, this);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QAbstractButton::clicked, this, clicked);
    row.addWidget(button);
    return button;
}

TextLabel *LargeHead::addLabel(QHBoxLayout &row, const QString &name)
{
    auto *const label = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, this);
    label->setObjectName(name);
    row.addWidget(label);
    return label;
}

void LargeHead::addTitles(QHBoxLayout &row)
{
    auto *const titles = new QVBoxLayout;
    titles->setSpacing(0);
    m_name = new ElidedLabel({}, Token::Text, 1.08, this);
    m_name->setObjectName(QStringLiteral("largeName"));
    m_summary = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, this);
    m_summary->setObjectName(QStringLiteral("largeSummary"));
    titles->addWidget(m_name);
    titles->addWidget(m_summary);
    row.addLayout(titles, 1);
}

void LargeHead::addTools(QHBoxLayout &row)
{
    m_before = add(row, QStringLiteral("chevron-left"), QStringLiteral("Vorheriges Element (←)"),
                   QStringLiteral("largeBefore"), &LargeHead::beforeWanted);
    m_number = addLabel(row, QStringLiteral("largeNumber"));
    m_after = add(row, QStringLiteral("chevron-right"), QStringLiteral("Nächstes Element (→)"),
                  QStringLiteral("largeAfter"), &LargeHead::afterWanted);
    m_smaller = add(row, QStringLiteral("zoom-out"), QStringLiteral("Verkleinern (−)"), QStringLiteral("largeSmaller"),
                    &LargeHead::smallerWanted);
    m_scale = addLabel(row, QStringLiteral("largeScale"));
    m_scale->setAlignment(Qt::AlignCenter);
    m_scale->setMinimumWidth(scaled(52));
    m_larger = add(row, QStringLiteral("zoom-in"), QStringLiteral("Vergrößern (+)"), QStringLiteral("largeLarger"),
                   &LargeHead::largerWanted);
    m_fit = add(row, QStringLiteral("maximize-2"), QStringLiteral("Einpassen (0) oder 100 % (1)"),
                QStringLiteral("largeFit"), &LargeHead::fitToggled);
    m_open = makeButton(QStringLiteral("Öffnen"), ButtonKind::Usual, QStringLiteral("largeOpen"), this);
    m_open->setFocusPolicy(Qt::TabFocus);
    m_open->setToolTip(QStringLiteral("Öffnet das Element (Eingabe)"));
    connect(m_open, &QAbstractButton::clicked, this, &LargeHead::openWanted);
    row.addWidget(m_open);
}

void LargeHead::showViewing(const Viewing &viewing)
{
    m_name->setText(viewing.entry.empty() ? counted(static_cast<qint64>(viewing.count), QStringLiteral("Element"),
                                                    QStringLiteral("Elemente"))
                                          : shownName(viewing.entry));
    m_before->setEnabled(viewing.before.has_value());
    m_after->setEnabled(viewing.after.has_value());
    m_number->setText(viewing.number > 0 ? QStringLiteral("%1 von %2").arg(viewing.number).arg(viewing.count)
                                         : QString());
}

void LargeHead::showContent(const PreviewContent &content)
{
    m_summary->setText(content.summary);
    m_open->setEnabled(content.state != PreviewContent::State::Failed && !content.entry.empty());
}

void LargeHead::showZoom(ZoomState state, double scale)
{
    for (QWidget *const one : std::initializer_list<QWidget *>{m_smaller, m_scale, m_larger, m_fit})
        one->setVisible(state != ZoomState::None);
    m_scale->setText(QStringLiteral("%1 %").arg(std::round(scale * 100)));
    m_smaller->setEnabled(state != ZoomState::Fitted);
    m_larger->setEnabled(state != ZoomState::Largest);
}

} // namespace brellin

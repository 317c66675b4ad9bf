#include "Look/Buttons.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

namespace {

QString wordOf(ButtonKind kind)
{
    switch (kind) {
    case ButtonKind::Usual:
        return {};
    case ButtonKind::Primary:
        return QStringLiteral("primary");
    case ButtonKind::Danger:
        return QStringLiteral("danger");
    case ButtonKind::Plain:
        return QStringLiteral("plain");
    case ButtonKind::Link:
        return QStringLiteral("link");
    }
    return {};
}

Token inkOf(ButtonKind kind)
{
    switch (kind) {
    case ButtonKind::Primary:
        return Token::OnAccent;
    case ButtonKind::Danger:
        return Token::Danger;
    case ButtonKind::Plain:
        return Token::Secondary;
    case ButtonKind::Link:
        return Token::Accent;
    case ButtonKind::Usual:
        return Token::Text;
    }
    return Token::Text;
}

QString badgeText(int number)
{
    return number > 99 ? QStringLiteral("99+") : QString::number(number);
}

} // namespace

QPushButton *makeButton(const QString &title, ButtonKind kind, const QString &objectName, QWidget *parent,
                        const QString &symbol)
{
    auto *const button = new QPushButton(title, parent);
    button->setObjectName(objectName);
    button->setProperty("kind", wordOf(kind));
    button->setAccessibleName(title);
    if (!symbol.isEmpty()) {
        button->setIcon(Symbols::icon(symbol, inkOf(kind), inkOf(kind)));
        button->setIconSize({scaled(20), scaled(16)});
    }
    return button;
}

SymbolButton::SymbolButton(const QString &symbol, const QString &title, const QString &objectName, QWidget *parent,
                           Token normal)
    : QToolButton(parent)
    , m_title(title)
    , m_normal(normal)
{
    setObjectName(objectName);
    setProperty("kind", QStringLiteral("symbol"));
    setAccessibleName(title);
    setToolTip(title);
    setFocusPolicy(Qt::TabFocus);
    setPopupMode(QToolButton::InstantPopup);
    setSymbol(symbol);
}

void SymbolButton::setSymbol(const QString &symbol)
{
    setIcon(Symbols::icon(symbol, m_normal));
    setIconSize({scaled(18), scaled(18)});
}

void SymbolButton::setBadge(int number)
{
    m_badge = number;
    setAccessibleName(number > 0 ? QStringLiteral("%1, %2").arg(m_title).arg(number) : m_title);
    update();
}

QSize SymbolButton::sizeHint() const
{
    return {scaled(30), scaled(30)};
}

void SymbolButton::paintEvent(QPaintEvent *event)
{
    QToolButton::paintEvent(event);
    if (m_badge <= 0)
        return;
    QPainter painter(this);
    paintBadgeNumber(painter, QPointF(width() - badgeNumberWidth(m_badge) / 2, scaled(8)), m_badge);
}

double badgeNumberWidth(int number)
{
    const QFontMetricsF metrics(sizedFont(0.78, QFont::Bold));
    return std::max<double>(scaled(15), metrics.horizontalAdvance(badgeText(number)) + scaled(8));
}

void paintBadgeNumber(QPainter &painter, QPointF center, int number)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double width = badgeNumberWidth(number);
    const double height = scaled(15);
    const QRectF place(center.x() - width / 2, center.y() - height / 2, width, height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::Danger));
    painter.drawRoundedRect(place, height / 2, height / 2);
    painter.setFont(sizedFont(0.78, QFont::Bold));
    painter.setPen(readableOn(color(Token::Danger)));
    painter.drawText(place, Qt::AlignCenter, badgeText(number));
    painter.restore();
}

} // namespace brellin

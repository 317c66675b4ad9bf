#include "Agent/Screens/AgentCard.h"

#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace brellin {

namespace {

constexpr double radius = 14;

int textHeight(double factor, QFont::Weight weight = QFont::Normal)
{
    return QFontMetrics(sizedFont(factor, weight)).height();
}

} // namespace

AgentCard::AgentCard(const QString &symbol, const QString &title, const Noun &noun, const QString &hint,
                     const QString &objectName, QWidget *parent)
    : QAbstractButton(parent)
    , m_symbol(symbol)
    , m_noun(noun)
    , m_hint(hint)
{
    setText(title);
    setObjectName(objectName);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&Theme::shared(), &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
    describe();
}

void AgentCard::addSettings(const QString &title, const QString &objectName)
{
    auto *const button =
        new SymbolButton(QStringLiteral("sliders-horizontal"), title, objectName, this, Token::Secondary);
    connect(button, &QToolButton::clicked, this, &AgentCard::settingsRequested);
    m_settings = button;
}

void AgentCard::setValue(std::optional<int> value)
{
    m_value = value;
    describe();
    update();
}

void AgentCard::setNote(const QString &note)
{
    m_note = note;
    update();
}

void AgentCard::describe()
{
    const QString counts = m_value ? counted(*m_value, m_noun.one, m_noun.many) : QStringLiteral("nicht bekannt");
    setAccessibleName(text() + QStringLiteral(": ") + counts);
    setAccessibleDescription(m_hint);
}

QSize AgentCard::sizeHint() const
{
    return {scaled(300), heightForWidth(scaled(300))};
}

int AgentCard::hintHeight(int width) const
{
    return QFontMetrics(sizedFont(1)).boundingRect(QRect(0, 0, width, 10000), Qt::TextWordWrap, m_hint).height();
}

int AgentCard::heightForWidth(int width) const
{
    const int inner = width - 2 * shadowReach() - 2 * scaled(20);
    // Reserve two lines for the hint, so that all cards of a row have the same height.
    const int hint = std::max(hintHeight(inner), 2 * textHeight(1));
    return 2 * shadowReach() + 2 * scaled(18) + scaled(38) + scaled(12) + textHeight(2.3, QFont::Bold) + scaled(4) +
           hint + scaled(6) + textHeight(0.92);
}

void AgentCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(shadowReach(), shadowReach(), -shadowReach(), -shadowReach());
    paintShadow(painter, card, radius);
    painter.setPen(hasFocus()     ? QPen(color(Token::Accent), 2)
                   : underMouse() ? QPen(color(Token::FieldBorder), 1)
                                  : QPen(Qt::NoPen));
    painter.setBrush(color(isDown() ? Token::Zebra : Token::Card));
    painter.drawRoundedRect(card.adjusted(1, 1, -1, -1), radius, radius);
    paintTexts(painter, card.toRect().adjusted(scaled(20), scaled(18), -scaled(20), -scaled(18)));
}

void AgentCard::paintTexts(QPainter &painter, const QRect &inner) const
{
    const QRect tile(inner.topLeft(), QSize(scaled(38), scaled(38)));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::AccentSoft));
    painter.drawRoundedRect(tile, 10, 10);
    const int side = scaled(20);
    Symbols::paint(painter,
                   QRectF(tile.center().x() - side / 2.0 + 0.5, tile.center().y() - side / 2.0 + 0.5, side, side),
                   m_symbol, color(Token::Accent));
    painter.setPen(color(Token::Text));
    painter.setFont(sizedFont(1.15, QFont::DemiBold));
    const int titleLeft = tile.right() + scaled(13);
    const int titleRight = m_settings ? m_settings->x() - 4 : inner.right();
    painter.drawText(QRect(titleLeft, tile.top(), titleRight - titleLeft, tile.height()), Qt::AlignVCenter, text());

    const QRect numbers(inner.left(), tile.bottom() + scaled(12), inner.width(), textHeight(2.3, QFont::Bold));
    painter.setFont(sizedFont(2.3, QFont::Bold));
    const QString number = m_value ? german().toString(*m_value) : QStringLiteral("–");
    painter.drawText(numbers, Qt::AlignLeft | Qt::AlignBottom, number);
    const int numberWidth = painter.fontMetrics().horizontalAdvance(number);
    const int baseline = numbers.bottom() - painter.fontMetrics().descent();
    painter.setFont(sizedFont(1, QFont::Medium));
    painter.setPen(color(Token::Secondary));
    painter.drawText(QPoint(inner.left() + numberWidth + scaled(9), baseline), m_value == 1 ? m_noun.one : m_noun.many);

    painter.setFont(sizedFont(1));
    const int height = hintHeight(inner.width());
    const QRect hint(inner.left(), numbers.bottom() + scaled(4), inner.width(), height);
    painter.drawText(hint, Qt::TextWordWrap, m_hint);
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Tertiary));
    painter.drawText(QRect(inner.left(), hint.bottom() + scaled(6), inner.width(), textHeight(0.92)), Qt::AlignLeft,
                     painter.fontMetrics().elidedText(m_note, Qt::ElideRight, inner.width()));
}

void AgentCard::resizeEvent(QResizeEvent *)
{
    if (!m_settings)
        return;
    m_settings->resize(m_settings->sizeHint());
    m_settings->move(width() - shadowReach() - scaled(16) - m_settings->width(), shadowReach() + scaled(22));
}

void AgentCard::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void AgentCard::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

void AgentCard::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace brellin

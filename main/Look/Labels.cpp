#include "Look/Labels.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace brellin {

TextLabel::TextLabel(const QString &text, Token token, double factor, QFont::Weight weight, QWidget *parent)
    : QLabel(text, parent)
    , m_token(token)
    , m_factor(factor)
    , m_weight(weight)
{
    setTextFormat(Qt::PlainText);
    dress();
    connect(&Theme::shared(), &Theme::changed, this, &TextLabel::dress);
}

void TextLabel::setToken(Token token)
{
    m_token = token;
    dress();
}

void TextLabel::dress()
{
    setFont(sizedFont(m_factor, m_weight));
    QPalette own = palette();
    own.setColor(QPalette::WindowText, color(m_token));
    setPalette(own);
}

namespace {

TextLabel *wrapped(TextLabel *label)
{
    label->setWordWrap(true);
    return label;
}

} // namespace

TextLabel *makeBody(const QString &text, QWidget *parent)
{
    return wrapped(new TextLabel(text, Token::Text, 1, QFont::Normal, parent));
}

TextLabel *makeSecondary(const QString &text, QWidget *parent)
{
    return wrapped(new TextLabel(text, Token::Secondary, 0.92, QFont::Normal, parent));
}

TextLabel *makeHeading(const QString &text, QWidget *parent)
{
    return new TextLabel(text, Token::Secondary, 0.92, QFont::DemiBold, parent);
}

TextLabel *makeTitle(const QString &text, QWidget *parent)
{
    return new TextLabel(text, Token::Text, 1.7, QFont::Bold, parent);
}

ElidedLabel::ElidedLabel(const QString &text, Token token, double factor, QWidget *parent, Qt::TextElideMode mode)
    : TextLabel(text, token, factor, QFont::Normal, parent)
    , m_whole(text)
    , m_mode(mode)
{
    setToolTip(text);
}

void ElidedLabel::setText(const QString &text)
{
    m_whole = text;
    setToolTip(text);
    QLabel::setText(text);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_whole) + 2, QLabel::sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment() | Qt::AlignVCenter | Qt::TextSingleLine),
                     fontMetrics().elidedText(m_whole, m_mode, width()));
}

EmptyState::EmptyState(const QString &symbol, const QString &title, const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_symbol(new QLabel(this))
    , m_title(new TextLabel(title, Token::Text, 1.15, QFont::DemiBold, this))
    , m_text(makeSecondary(text, this))
{
    setSymbol(symbol, Token::Tertiary);
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setWordWrap(true);
    m_text->setAlignment(Qt::AlignHCenter);
    m_text->setMaximumWidth(scaled(460));
    m_text->setMinimumWidth(scaled(300));
    m_text->setVisible(!text.isEmpty());
    auto *const column = new QVBoxLayout(this);
    column->setSpacing(scaled(10));
    column->addStretch(2);
    column->addWidget(m_symbol, 0, Qt::AlignHCenter);
    column->addWidget(m_title);
    // Needs a layout of its own: an aligned label gets the height for its text at full width.
    auto *const middle = new QHBoxLayout;
    middle->addStretch(1);
    middle->addWidget(m_text, 100);
    middle->addStretch(1);
    column->addLayout(middle);
    column->addStretch(3);
}

void EmptyState::setTexts(const QString &title, const QString &text)
{
    m_title->setText(title);
    m_text->setText(text);
    m_text->setVisible(!text.isEmpty());
}

void EmptyState::addButton(QWidget *button)
{
    auto *const column = static_cast<QVBoxLayout *>(layout());
    column->insertWidget(column->count() - 1, button, 0, Qt::AlignHCenter);
}

void EmptyState::setSymbol(const QString &symbol, Token token)
{
    m_symbol->setPixmap(Symbols::pixmap(symbol, scaled(40), color(token), devicePixelRatioF()));
}

} // namespace brellin

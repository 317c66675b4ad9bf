#include "App/Window/PageMessage.h"

#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

PageMessage::PageMessage(QWidget *parent) : TextLabel({}, Token::Secondary, 0.92, QFont::Normal, parent)
{
    setObjectName(QStringLiteral("pageMessage"));
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setContentsMargins(scaled(14), scaled(7), scaled(14), scaled(7));
    m_failedNow.setSingleShot(true);
    m_failedNow.setInterval(0);
    m_ends.setSingleShot(true);
    m_ends.setInterval(std::chrono::seconds(6));
    connect(&m_ends, &QTimer::timeout, this, &PageMessage::dismiss);
    hide();
}

void PageMessage::say(const QString &message)
{
    if (m_failedNow.isActive())
        return display(message + u'\n' + text(), Token::Danger);
    display(message, Token::Secondary);
    m_ends.start();
}

void PageMessage::fail(const QString &message)
{
    m_ends.stop();
    m_failedNow.start();
    display(message, Token::Danger);
}

void PageMessage::dismiss()
{
    m_ends.stop();
    clear();
    hide();
}

void PageMessage::display(const QString &message, Token token)
{
    setToken(token);
    setText(message);
    setVisible(!message.isEmpty());
}

void PageMessage::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, 0, width(), 1), color(Token::Line));
    painter.end();
    TextLabel::paintEvent(event);
}

} // namespace brellin

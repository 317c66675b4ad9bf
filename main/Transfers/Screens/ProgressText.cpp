#include "Transfers/Screens/ProgressText.h"

#include "Look/Digits.h"
#include "Look/Theme.h"

#include <QPainter>
#include <QResizeEvent>

#include <algorithm>

namespace brellin {

namespace {

const QString between = QStringLiteral(" · ");

} // namespace

ProgressText::ProgressText(QWidget *parent) : QWidget(parent)
{
    dress();
    connect(&Theme::shared(), &Theme::changed, this, &ProgressText::dress);
}

void ProgressText::dress()
{
    setFont(sizedFont(0.92));
    setFixedHeight(static_cast<int>(m_lines) * fontMetrics().height());
    update();
}

void ProgressText::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    m_lines = std::max(m_lines, broken().size());
    dress();
}

/// Puts as many pieces as fit on each line; the painter elides a piece that is too long for one.
QStringList ProgressText::broken() const
{
    QStringList lines;
    for (const QString &part : m_text.split(between)) {
        const QString longer = lines.isEmpty() ? part : lines.constLast() + between + part;
        if (lines.isEmpty() || digitsWidth(font(), longer) > width())
            lines << part;
        else
            lines.last() = longer;
    }
    return lines;
}

QSize ProgressText::sizeHint() const
{
    return {static_cast<int>(digitsWidth(font(), m_text)) + 1, height()};
}

void ProgressText::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        m_lines = broken().size();
    dress();
}

void ProgressText::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(color(Token::Secondary));
    const double line = fontMetrics().height();
    double top = 0;
    for (const QString &text : broken()) {
        paintDigits(painter, QRectF(0, top, width(), line), text);
        top += line;
    }
}

} // namespace brellin

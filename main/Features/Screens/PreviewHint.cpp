#include "Features/Screens/PreviewHint.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>

#include <cmath>

namespace brellin {

namespace {

constexpr double radius = 8;
constexpr double inside = 11;
constexpr double lineShare = 1.38; ///< line height in relation to the font's pixel size
constexpr double symbolSide = 14;

} // namespace

PreviewHint::PreviewHint(const QString &symbol, QWidget *parent) : QWidget(parent), m_symbol(symbol)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&Theme::shared(), &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void PreviewHint::setText(const QString &text)
{
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

double PreviewHint::layOut(QTextLayout &lines, double width) const
{
    const double margin = scaled(inside);
    const double indent = scaled(symbolSide + 4);
    const double step = std::round(QFontMetricsF(lines.font()).height() * lineShare / 1.2);
    double y = margin;
    lines.beginLayout();
    for (QTextLine line = lines.createLine(); line.isValid(); line = lines.createLine()) {
        const double start = lines.lineCount() == 1 ? indent : 0;
        line.setLineWidth(std::max(width - 2 * margin - start, 10.0));
        line.setPosition({margin + start, y});
        y += step;
    }
    lines.endLayout();
    return y + margin;
}

int PreviewHint::heightForWidth(int width) const
{
    QTextLayout lines(m_text, sizedFont(0.92));
    return static_cast<int>(std::ceil(layOut(lines, width)));
}

QSize PreviewHint::sizeHint() const
{
    const int width = scaled(226);
    return {width, heightForWidth(width)};
}

void PreviewHint::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::AccentSoft));
    painter.drawRoundedRect(rect(), radius, radius);
    const double margin = scaled(inside);
    QTextLayout lines(m_text, sizedFont(0.92));
    layOut(lines, width());
    const double side = scaled(symbolSide);
    const double middle = lines.lineCount() > 0 ? lines.lineAt(0).rect().center().y() : margin + side / 2;
    Symbols::paint(painter, QRectF(margin, middle - side / 2, side, side), m_symbol, color(Token::Accent));
    painter.setPen(color(Token::Accent));
    lines.draw(&painter, {0, 0});
}

} // namespace brellin

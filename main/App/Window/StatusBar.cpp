#include "App/Window/StatusBar.h"

#include "Look/Digits.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

StatusBar::StatusBar(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("statusBar"));
    m_saidEnds.setSingleShot(true);
    connect(&m_saidEnds, &QTimer::timeout, this, [this] { say({}); });
}

void StatusBar::setPane(BrowserModel *pane)
{
    m_pane = pane;
    m_following = std::make_unique<QObject>();
    if (pane) {
        const auto follow = [this](const auto &) {
            setAccessibleName(m_pane ? m_pane->statusText.get() : QString());
            update();
        };
        pane->statusText.observe(m_following.get(), follow);
        pane->searchRunning.observe(m_following.get(), follow);
        pane->searchCapped.observe(m_following.get(), follow);
        pane->loading.observe(m_following.get(), follow);
    }
    update();
}

void StatusBar::say(const QString &message)
{
    m_said = message;
    if (!message.isEmpty())
        m_saidEnds.start(6000);
    update();
}

QSize StatusBar::sizeHint() const
{
    return {scaled(200), scaled(30)};
}

QString StatusBar::rightText() const
{
    if (!m_said.isEmpty() || !m_pane)
        return m_said;
    if (m_pane->searchRunning.get())
        return QStringLiteral("Suche läuft …");
    if (m_pane->searchCapped.get())
        return QStringLiteral("Die ersten 3.000 Treffer werden gezeigt.");
    return m_pane->loading.get() ? QStringLiteral("Lade …") : QString();
}

void StatusBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, 0, width(), 1), color(Token::Line));
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Secondary));
    const QRectF place = QRectF(rect()).adjusted(scaled(14), 1, -scaled(14), 0);
    const QString right = rightText();
    const double taken = right.isEmpty() ? 0 : digitsWidth(painter.font(), right);
    if (!right.isEmpty())
        paintDigits(painter, place, right, Qt::AlignRight);
    if (!m_pane)
        return;
    // Splits at the text's separators and draws lines instead.
    double x = place.left();
    const QStringList parts = m_pane->statusText.get().split(QStringLiteral("   |   "));
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const double width = digitsWidth(painter.font(), parts.at(i));
        if (x + width > place.right() - taken - scaled(10))
            break;
        paintDigits(painter, QRectF(x, place.top(), width + 2, place.height()), parts.at(i));
        x += width + scaled(12);
        if (i + 1 < parts.size())
            painter.fillRect(QRectF(x, place.center().y() - scaled(7), 1, scaled(14)), color(Token::Tertiary));
        x += scaled(13);
    }
}

} // namespace brellin

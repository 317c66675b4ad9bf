#include "App/Window/StatusBar.h"

#include "Look/Buttons.h"
#include "Look/DetailsSheet.h"
#include "Look/Digits.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

StatusBar::StatusBar(QWidget *parent)
    : QWidget(parent)
    , m_details(makeButton(QStringLiteral("Einzelheiten"), ButtonKind::Link, QStringLiteral("searchDetails"), this))
{
    setObjectName(QStringLiteral("statusBar"));
    m_saidEnds.setSingleShot(true);
    connect(&m_saidEnds, &QTimer::timeout, this, [this] { say({}); });
    connect(m_details, &QAbstractButton::clicked, this, &StatusBar::showNotSearched);
    m_details->hide();
}

void StatusBar::setPane(BrowserModel *pane)
{
    m_pane = pane;
    m_following = std::make_unique<QObject>();
    if (pane) {
        const auto follow = [this](const auto &) { showState(); };
        pane->statusText.observe(m_following.get(), follow);
        pane->searchRunning.observe(m_following.get(), follow);
        pane->searchCapped.observe(m_following.get(), follow);
        pane->notSearched.observe(m_following.get(), follow);
        pane->loading.observe(m_following.get(), follow);
    }
    showState();
}

void StatusBar::showState()
{
    setAccessibleName(m_pane ? m_pane->statusText.get() : QString());
    m_details->setVisible(m_pane && !m_pane->notSearched.get().empty());
    placeDetails();
    update();
}

void StatusBar::placeDetails()
{
    const int wide = m_details->sizeHint().width();
    m_details->setGeometry(width() - scaled(14) - wide, 1, wide, height() - 1);
}

void StatusBar::resizeEvent(QResizeEvent *)
{
    placeDetails();
}

void StatusBar::showNotSearched()
{
    const SearchGaps gaps = m_pane ? m_pane->notSearched.get() : SearchGaps();
    (new DetailsSheet(gapsText(gaps), gapsLines(gaps), this))->open();
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
    if (!m_pane->notSearched.get().empty())
        return gapsText(m_pane->notSearched.get());
    return m_pane->loading.get() ? QStringLiteral("Lade …") : QString();
}

void StatusBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, 0, width(), 1), color(Token::Line));
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Secondary));
    const int right = m_details->isVisible() ? width() - m_details->x() + scaled(10) : scaled(14);
    const QRectF place = QRectF(rect()).adjusted(scaled(14), 1, -right, 0);
    const QString said = rightText();
    const double taken = said.isEmpty() ? 0 : digitsWidth(painter.font(), said);
    if (!said.isEmpty())
        paintDigits(painter, place, said, Qt::AlignRight);
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

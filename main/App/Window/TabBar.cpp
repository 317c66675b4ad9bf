#include "App/Window/TabBar.h"

#include "Look/Buttons.h"
#include "Look/EntryIcons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace brellin {

namespace {

/// Draws each tab as a folder tab with its name; the current one has the background of the list below.
class PaintedTabs : public QTabBar {
public:
    explicit PaintedTabs(QWidget *parent) : QTabBar(parent)
    {
        setObjectName(QStringLiteral("tabs"));
        setAccessibleName(QStringLiteral("Tabs"));
        setDrawBase(false);
        setExpanding(false);
        setMovable(true);
        setUsesScrollButtons(true);
        setElideMode(Qt::ElideMiddle);
        setFocusPolicy(Qt::TabFocus);
        setMouseTracking(true);
    }

    int closeOver(QPoint point) const
    {
        const int tab = tabAt(point);
        return tab >= 0 && count() > 1 && closePlace(tabRect(tab)).contains(point) ? tab : -1;
    }

protected:
    QSize tabSizeHint(int tab) const override
    {
        const int text = QFontMetrics(sizedFont(1, QFont::DemiBold)).horizontalAdvance(tabText(tab));
        return {std::min(scaled(240), text + scaled(66)), scaled(29)};
    }
    QSize minimumTabSizeHint(int) const override { return {scaled(80), scaled(29)}; }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int tab = 0; tab < count(); ++tab)
            if (tab != currentIndex())
                paintTab(painter, tab);
        if (currentIndex() >= 0)
            paintTab(painter, currentIndex());
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        const int tab = closeOver(event->position().toPoint());
        if (event->button() != Qt::MiddleButton && tab < 0)
            QTabBar::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const QPoint point = event->position().toPoint();
        const int tab = event->button() == Qt::MiddleButton ? tabAt(point) : closeOver(point);
        if (tab >= 0)
            Q_EMIT tabCloseRequested(tab);
        else
            QTabBar::mouseReleaseEvent(event);
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        QTabBar::mouseMoveEvent(event);
        update();
    }
    void leaveEvent(QEvent *event) override
    {
        QTabBar::leaveEvent(event);
        update();
    }

private:
    static QRect closePlace(const QRect &tab)
    {
        const int side = scaled(18);
        return {tab.right() - side - scaled(5), tab.center().y() - side / 2 + 1, side, side};
    }

    void paintTab(QPainter &painter, int tab)
    {
        const bool current = tab == currentIndex();
        const QRect place = tabRect(tab);
        const bool hovered = place.contains(mapFromGlobal(QCursor::pos())) && underMouse();
        if (current)
            paintCurrent(painter, place);
        const int side = scaled(16);
        const QRectF symbol(place.left() + scaled(13), place.center().y() - side / 2.0, side, side);
        painter.drawPixmap(symbol.topLeft(), EntryIcons::folder(side, devicePixelRatioF()));
        painter.setFont(sizedFont(1, current ? QFont::DemiBold : QFont::Normal));
        painter.setPen(color(current ? Token::Text : Token::Secondary));
        const QRect text = place.adjusted(scaled(36), 0, -scaled(26), 0);
        painter.drawText(text, Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(tabText(tab), Qt::ElideMiddle, text.width()));
        if (hovered && count() > 1)
            paintClose(painter, closePlace(place));
        if (hasFocus() && current) {
            painter.setPen(QPen(color(Token::Accent), 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(place).adjusted(3, 3, -3, -3), 5, 5);
        }
    }

    void paintCurrent(QPainter &painter, const QRect &place) const
    {
        QPainterPath shape;
        const QRectF frame = QRectF(place).adjusted(0.5, 0.5, -0.5, 1);
        shape.moveTo(frame.bottomLeft());
        shape.lineTo(frame.left(), frame.top() + 8);
        shape.quadTo(frame.topLeft(), QPointF(frame.left() + 8, frame.top()));
        shape.lineTo(frame.right() - 8, frame.top());
        shape.quadTo(frame.topRight(), QPointF(frame.right(), frame.top() + 8));
        shape.lineTo(frame.bottomRight());
        painter.setPen(color(Token::Line));
        painter.setBrush(color(Token::Content));
        painter.drawPath(shape);
    }

    void paintClose(QPainter &painter, const QRect &place) const
    {
        if (place.contains(mapFromGlobal(QCursor::pos()))) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(color(Token::Line));
            painter.drawRoundedRect(place, 5, 5);
        }
        Symbols::paint(painter, QRectF(place).adjusted(3, 3, -3, -3), QStringLiteral("x"), color(Token::Secondary));
    }
};

} // namespace

TabBar::TabBar(QWidget *parent) : QWidget(parent), m_bar(new PaintedTabs(this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(8), scaled(5), scaled(8), 0);
    row->setSpacing(scaled(4));
    row->addWidget(m_bar, 0, Qt::AlignBottom);
    auto *const plus = new SymbolButton(QStringLiteral("plus"), QStringLiteral("Neuer Tab (Strg+T)"),
                                        QStringLiteral("newTabButton"), this, Token::Secondary);
    plus->setFixedSize(scaled(26), scaled(26));
    row->addWidget(plus);
    row->addStretch(1);
    connect(plus, &QAbstractButton::clicked, this, &TabBar::addRequested);
    connect(m_bar, &QTabBar::currentChanged, this, &TabBar::currentChanged);
    connect(m_bar, &QTabBar::tabCloseRequested, this, &TabBar::closeRequested);
    connect(m_bar, &QTabBar::tabMoved, this, &TabBar::moved);
}

int TabBar::add(const QString &title)
{
    return m_bar->addTab(title);
}

void TabBar::remove(int tab)
{
    m_bar->removeTab(tab);
}

void TabBar::setTitle(int tab, const QString &title, const QString &toolTip)
{
    // PaintedTabs draws the text as it is, so "&" must not be doubled.
    m_bar->setTabText(tab, title);
    m_bar->setTabToolTip(tab, toolTip);
}

void TabBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), color(Token::Line));
}

} // namespace brellin

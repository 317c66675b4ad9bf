#include "App/Window/TabBar.h"

#include "Look/Buttons.h"
#include "Look/EntryIcons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

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
        setUsesScrollButtons(true);
        setElideMode(Qt::ElideMiddle);
        setFocusPolicy(Qt::TabFocus);
        setMouseTracking(true);
    }

    void showDrop(int tab)
    {
        m_dropTab = tab;
        update();
    }

    int closeOver(QPoint point) const
    {
        const int tab = tabAt(point);
        return tab >= 0 && count() > 1 && closePlace(tabRect(tab)).contains(point) ? tab : -1;
    }

protected:
    QSize tabSizeHint(int tab) const override
    {
        const int text = QFontMetrics(sizedFont(1, QFont::DemiBold)).horizontalAdvance(title(tab));
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

    /// Selects and drags tabs by itself: QTabBar would show a dragged tab in the style of the system.
    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint point = event->position().toPoint();
        const int tab = tabAt(point);
        m_press = {event->button(), tab, closeOver(point) >= 0, point.x(), 0};
        if (!m_press.drags())
            return;
        setCurrentIndex(tab); // may scroll
        m_press.left = tabRect(tab).left();
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        const int way = event->position().toPoint().x() - m_press.x;
        if (m_press.drags() && (m_dragged || std::abs(way) >= QApplication::startDragDistance()))
            dragTo(m_press.left + way);
        update();
    }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const QPoint point = event->position().toPoint();
        const Press press = std::exchange(m_press, {});
        const bool dragged = std::exchange(m_dragged, std::nullopt).has_value();
        update();
        if (dragged || press.tab < 0 || press.button != event->button())
            return;
        if (press.closes ? closeOver(point) == press.tab
                         : press.button == Qt::MiddleButton && tabAt(point) == press.tab)
            Q_EMIT tabCloseRequested(press.tab);
    }
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
        Q_EMIT customContextMenuRequested(byKey ? tabRect(currentIndex()).center() : event->pos());
    }
    void leaveEvent(QEvent *event) override
    {
        QTabBar::leaveEvent(event);
        update();
    }

private:
    /// Where a mouse button went down.
    struct Press {
        Qt::MouseButton button = Qt::NoButton;
        int tab = -1;
        bool closes = false; ///< on the tab's ×
        int x = 0;
        int left = 0; ///< of the tab at that time

        bool drags() const { return button == Qt::LeftButton && tab >= 0 && !closes; }
    };

    /// Shows the current tab there, and moves it past each neighbour whose middle it covers.
    void dragTo(int left)
    {
        const int width = tabRect(currentIndex()).width();
        m_dragged = std::clamp(left, 0, tabRect(count() - 1).right() + 1 - width);
        while (currentIndex() + 1 < count() && *m_dragged + width > tabRect(currentIndex() + 1).center().x())
            moveTab(currentIndex(), currentIndex() + 1);
        while (currentIndex() > 0 && *m_dragged < tabRect(currentIndex() - 1).center().x())
            moveTab(currentIndex(), currentIndex() - 1);
    }

    QString title(int tab) const { return tabText(tab).replace(QStringLiteral("&&"), QStringLiteral("&")); }

    static QRect closePlace(const QRect &tab)
    {
        const int side = scaled(18);
        return {tab.right() - side - scaled(5), tab.center().y() - side / 2 + 1, side, side};
    }

    void paintTab(QPainter &painter, int tab)
    {
        const bool current = tab == currentIndex();
        QRect place = tabRect(tab);
        if (current && m_dragged)
            place.moveLeft(*m_dragged);
        const bool hovered = place.contains(mapFromGlobal(QCursor::pos())) && underMouse();
        if (current)
            paintCurrent(painter, place);
        if (tab == m_dropTab) {
            painter.setPen(QPen(color(Token::Accent), 2));
            painter.setBrush(faded(Token::Accent, 0.25));
            painter.drawRoundedRect(QRectF(place).adjusted(2, 2, -2, -2), 6, 6);
        }
        const int side = scaled(16);
        const QRectF symbol(place.left() + scaled(13), place.center().y() - side / 2.0, side, side);
        painter.drawPixmap(symbol.topLeft(), EntryIcons::folder(side, devicePixelRatioF()));
        painter.setFont(sizedFont(1, current ? QFont::DemiBold : QFont::Normal));
        painter.setPen(color(current ? Token::Text : Token::Secondary));
        const QRect text = place.adjusted(scaled(36), 0, -scaled(26), 0);
        painter.drawText(text, Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(title(tab), Qt::ElideMiddle, text.width()));
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

    Press m_press;
    int m_dropTab = -1;
    std::optional<int> m_dragged; ///< left edge of the current tab while it is dragged
};

/// For QTabBar, which makes a mnemonic of a single "&".
QString escaped(QString title)
{
    return title.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

TabBar::TabBar(QWidget *parent) : QWidget(parent), m_bar(new PaintedTabs(this))
{
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(8), scaled(5), scaled(8), 0);
    row->setSpacing(scaled(4));
    row->addWidget(m_bar, 0, Qt::AlignBottom);
    auto *const plus = new SymbolButton(QStringLiteral("plus"), QStringLiteral("Neuer Tab"),
                                        QStringLiteral("newTabButton"), this, Token::Secondary);
    m_plus = plus;
    plus->setFixedSize(scaled(26), scaled(26));
    row->addWidget(plus);
    row->addStretch(1);
    connect(plus, &QAbstractButton::clicked, this, &TabBar::addRequested);
    connect(m_bar, &QTabBar::currentChanged, this, &TabBar::currentChanged);
    connect(m_bar, &QTabBar::tabCloseRequested, this, &TabBar::closeRequested);
    connect(m_bar, &QTabBar::tabMoved, this, &TabBar::moved);
    connect(m_bar, &QWidget::customContextMenuRequested, this, [this](QPoint point) {
        if (const int tab = m_bar->tabAt(point); tab >= 0)
            Q_EMIT menuRequested(tab, m_bar->mapToGlobal(point));
    });
}

void TabBar::insert(int tab, const QString &title)
{
    m_bar->insertTab(tab, escaped(title));
}

void TabBar::remove(int tab)
{
    m_bar->removeTab(tab);
}

void TabBar::setTitle(int tab, const QString &title, const QString &toolTip)
{
    m_bar->setTabText(tab, escaped(title));
    m_bar->setTabToolTip(tab, toolTip);
}

void TabBar::showKeyOfAdding(const QString &key)
{
    const QString help = QStringLiteral("Neuer Tab");
    m_plus->setToolTip(key.isEmpty() ? help : QStringLiteral("%1 (%2)").arg(help, key));
}

void TabBar::showDrop(int tab)
{
    static_cast<PaintedTabs *>(m_bar)->showDrop(tab);
}

void TabBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), color(Token::Line));
}

} // namespace brellin

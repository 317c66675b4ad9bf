#include "Look/SheetFrame.h"

#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/FocusRing.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace brellin {

namespace {

constexpr double radius = 14;

/// The sheet itself: rounded corners and shadow.
class Panel : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(Token::Card));
        painter.drawRoundedRect(rect(), radius, radius);
    }
};

/// The column beside the content, with the window's background.
class Side : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), color(Token::Window));
        painter.fillRect(QRect(0, 0, 1, height()), color(Token::Line));
    }
};

QScrollArea *scrolling(QWidget *inner, QWidget *parent)
{
    auto *const area = new QScrollArea(parent);
    area->setWidget(inner);
    inner->setAutoFillBackground(false); // setWidget() switched it on
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    return area;
}

} // namespace

SheetFrame::SheetFrame(const QString &title, const QString &subtitle, QSize wanted, QWidget *window)
    : QWidget(window->window())
    , m_wanted(wanted)
    , m_panel(new Panel(this))
    , m_focusBefore(QApplication::focusWidget())
{
    setAccessibleName(title);
    auto *const whole = new QVBoxLayout(m_panel);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(0);

    auto *const head = new QVBoxLayout;
    head->setContentsMargins(scaled(24), scaled(18), scaled(24), scaled(14));
    head->setSpacing(scaled(4));
    head->addWidget(new TextLabel(title, Token::Text, 1.3, QFont::Bold, m_panel));
    if (!subtitle.isEmpty())
        head->addWidget(makeSecondary(subtitle, m_panel));
    whole->addLayout(head);
    whole->addWidget(new Separator(Qt::Horizontal, m_panel));

    m_inner = new QWidget;
    m_content = new QVBoxLayout(m_inner);
    m_content->setContentsMargins(scaled(24), scaled(16), scaled(24), scaled(16));
    m_content->setSpacing(scaled(8));
    m_middle = new QHBoxLayout;
    m_middle->setSpacing(0);
    m_middle->addWidget(scrolling(m_inner, m_panel), 1);
    whole->addLayout(m_middle, 1);

    whole->addWidget(new Separator(Qt::Horizontal, m_panel));
    m_buttons = new QHBoxLayout;
    m_buttons->setContentsMargins(scaled(20), scaled(14), scaled(20), scaled(14));
    m_buttons->setSpacing(scaled(8));
    m_buttons->addStretch(1);
    whole->addLayout(m_buttons);

    parentWidget()->installEventFilter(this);
    m_inner->installEventFilter(this);
    hide();
}

QVBoxLayout *SheetFrame::side(int width)
{
    if (m_side)
        return m_side;
    auto *const ground = new Side;
    m_side = new QVBoxLayout(ground);
    m_side->setContentsMargins(scaled(20), scaled(16), scaled(20), scaled(16));
    QScrollArea *const area = scrolling(ground, m_panel);
    area->setFixedWidth(scaled(width));
    m_middle->addWidget(area);
    return m_side;
}

void SheetFrame::open()
{
    fit();
    show();
    raise();
    // Focus the first control, so that Tab stays within the sheet.
    setFocus();
    focusNextPrevChild(true);
}

void SheetFrame::close()
{
    if (isHidden())
        return;
    hide();
    parentWidget()->removeEventFilter(this);
    if (m_focusBefore && m_focusBefore->isVisible())
        m_focusBefore->setFocus();
    Q_EMIT closed();
    deleteLater();
}

void SheetFrame::fit()
{
    setGeometry(parentWidget()->rect());
    const int margin = scaled(24);
    const int wide = std::min(scaled(m_wanted.width()), width() - 2 * margin);
    const int high = m_wanted.height() > 0 ? scaled(m_wanted.height()) : heightOfContent(wide);
    const QSize size(wide, std::min(high, height() - 2 * margin));
    m_panel->setGeometry(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size));
}

/// The height of the content plus everything above and below it.
int SheetFrame::heightOfContent(int width) const
{
    const auto heightOf = [width](const QLayoutItem &item) {
        return item.hasHeightForWidth() ? item.heightForWidth(width) : item.sizeHint().height();
    };
    int height = heightOf(*m_content);
    const QLayout *const whole = m_panel->layout();
    for (int i = 0; i < whole->count(); ++i)
        if (whole->itemAt(i) != m_middle)
            height += heightOf(*whole->itemAt(i));
    return height;
}

bool SheetFrame::eventFilter(QObject *watched, QEvent *event)
{
    if ((watched == parentWidget() && event->type() == QEvent::Resize) ||
        (watched == m_inner && event->type() == QEvent::LayoutRequest && isVisible()))
        fit();
    return QWidget::eventFilter(watched, event);
}

void SheetFrame::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        escape();
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *const button = qobject_cast<QPushButton *>(QApplication::focusWidget());
    if (enter && !event->isAutoRepeat() && button && isAncestorOf(button))
        button->click();
    else if (enter && !event->isAutoRepeat())
        confirm();
    // Keep events from the window beneath.
    event->accept();
}

void SheetFrame::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor dim(Qt::black);
    dim.setAlphaF(Theme::shared().appearance() == Appearance::Dark ? 0.5F : 0.28F);
    painter.fillRect(rect(), dim);
    paintShadow(painter, m_panel->geometry(), radius);
}

/// Makes Tab cycle within the sheet.
bool SheetFrame::focusNextPrevChild(bool next)
{
    focusWithin(*this, next);
    return true;
}

} // namespace brellin

#include "Sidebar/Screens/SymbolChoice.h"

#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"
#include "Sidebar/Screens/SymbolNames.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QPainter>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr int columns = 7;

int cellSide()
{
    return scaled(36);
}

class SymbolCell : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return {cellSide(), cellSide()};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF cell = QRectF(option.rect).adjusted(2, 2, -2, -2);
        const bool selected = option.state & QStyle::State_Selected;
        if (selected || option.state & QStyle::State_MouseOver) {
            painter->setPen(selected ? QPen(color(Token::Accent), 2) : QPen(Qt::NoPen));
            painter->setBrush(selected ? color(Token::AccentSoft) : faded(Token::Text, 0.055));
            painter->drawRoundedRect(cell.adjusted(1, 1, -1, -1), 7, 7);
        }
        const int side = scaled(20);
        QRectF symbol(0, 0, side, side);
        symbol.moveCenter(cell.center());
        Symbols::paint(*painter, symbol, index.data(Qt::UserRole).toString(),
                       color(selected ? Token::Accent : Token::Text));
        painter->restore();
    }
};

void fill(QListWidget &list, const QString &current)
{
    for (const QString &symbol : Symbols::choice()) {
        auto *const item = new QListWidgetItem(&list);
        item->setData(Qt::UserRole, symbol);
        item->setToolTip(germanSymbolName(symbol));
        item->setData(Qt::AccessibleTextRole, germanSymbolName(symbol));
        if (symbol == current)
            list.setCurrentItem(item);
    }
    if (!list.currentItem())
        list.setCurrentRow(0);
}

} // namespace

SymbolChoice::SymbolChoice(const QString &current, QWidget *parent)
    : QFrame(parent, Qt::Popup)
    , m_list(new QListWidget(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("symbolChoice"));
    setAccessibleName(QStringLiteral("Symbol wählen"));
    m_list->setObjectName(QStringLiteral("symbols"));
    m_list->setAccessibleName(QStringLiteral("Symbole"));
    m_list->setViewMode(QListView::IconMode);
    m_list->setMovement(QListView::Static);
    m_list->setGridSize({cellSide(), cellSide()});
    m_list->setItemDelegate(new SymbolCell(m_list));
    m_list->setMouseTracking(true);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fill(*m_list, current);
    const int rows = (m_list->count() + columns - 1) / columns;
    m_list->setFixedSize(columns * cellSide() + 4, rows * cellSide() + 4);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(scaled(12), scaled(10), scaled(12), scaled(12));
    column->setSpacing(scaled(6));
    column->addWidget(makeHeading(QStringLiteral("Symbol wählen"), this));
    column->addWidget(m_list);
    connect(m_list, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { choose(item->data(Qt::UserRole).toString()); });
    setFocusProxy(m_list);
}

void SymbolChoice::openAt(const QRect &line)
{
    adjustSize();
    const QRect room = screen()->availableGeometry();
    const int left = std::min(line.left(), room.right() - width());
    const int top = line.bottom() + height() < room.bottom() ? line.bottom() + 2 : line.top() - height() - 2;
    move(std::max(room.left(), left), std::max(room.top(), top));
    show();
    m_list->setFocus();
}

/// Receives keys that the list ignores, including Return.
void SymbolChoice::keyPressEvent(QKeyEvent *event)
{
    const bool take = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (take && m_list->currentItem())
        choose(m_list->currentItem()->data(Qt::UserRole).toString());
    else if (event->key() == Qt::Key_Escape)
        close();
    else
        QFrame::keyPressEvent(event);
}

void SymbolChoice::choose(const QString &symbol)
{
    close();
    Q_EMIT chosen(symbol);
}

void SymbolChoice::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Card));
    painter.setPen(color(Token::Line));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace brellin

#include "Agent/Screens/ProposalList.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Look/Cards.h"
#include "Look/Theme.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace brellin {

namespace {

constexpr double cardRadius = 14;

} // namespace

ProposalList::ProposalList(const AgentPorts &ports, QWidget *parent)
    : QListView(parent)
    , m_ports(ports)
    , m_model(ports.agent, ports.services.folders.home, this)
    , m_row(ports, m_model, this)
{
    setObjectName(QStringLiteral("agentProposals"));
    setAccessibleName(QStringLiteral("Vorschläge"));
    setModel(&m_model);
    setItemDelegate(&m_row);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(scaled(24));
    connect(&Theme::shared(), &Theme::changed, this, [this] { scheduleDelayedItemsLayout(); });
    connect(&m_model, &QAbstractItemModel::modelAboutToBeReset, this, &ProposalList::noteRows);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &ProposalList::findRows);
}

/// Saves the current row and the top row before the model resets.
void ProposalList::noteRows()
{
    const auto identityAt = [this](const QModelIndex &index) {
        return index.isValid() ? m_model.at(index.row()).identity : QByteArray();
    };
    m_current = identityAt(currentIndex());
    const QModelIndex top = indexAt(QPoint(viewport()->width() / 2, 0));
    m_top = identityAt(top);
    m_aboveTop = top.isValid() ? visualRect(top).top() : 0;
}

void ProposalList::findRows()
{
    if (const int top = m_model.rowOf(m_top); top >= 0) {
        scrollTo(m_model.index(top), PositionAtTop);
        verticalScrollBar()->setValue(verticalScrollBar()->value() - m_aboveTop);
    }
    if (m_current.isEmpty() || m_model.rowCount() == 0)
        return;
    // Do not scroll back to the current row if the user has scrolled away from it.
    setAutoScroll(false);
    setCurrentIndex(m_model.index(std::max(m_model.rowOf(m_current), 0)));
    setAutoScroll(true);
}

std::optional<AgentProposal> ProposalList::current() const
{
    const auto &proposal = currentIndex().isValid() ? m_model.at(currentIndex().row()).proposal : nullptr;
    return proposal ? std::optional(*proposal) : std::nullopt;
}

/// The list's keys take precedence over the window's shortcuts.
bool ProposalList::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        for (const int own : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Delete})
            if (key == own)
                event->accept();
    }
    return QListView::event(event);
}

void ProposalList::paintEvent(QPaintEvent *event)
{
    paintCards();
    QListView::paintEvent(event);
}

/// Paints each group's card beneath its rows, clipped to the viewport, so that a card of thousands of rows costs no
/// more than a small one.
void ProposalList::paintCards()
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect seen = viewport()->rect().adjusted(0, -2 * shadowReach(), 0, 2 * shadowReach());
    for (int row = 0; row < m_model.rowCount();) {
        const auto &group = m_model.at(row).group;
        const int last = row + (group ? static_cast<int>(group->proposals.size()) : 0);
        const QRect top = visualRect(m_model.index(row));
        const QRect bottom = visualRect(m_model.index(last)).adjusted(0, 0, 0, -ProposalRow::gap());
        const QRect card =
            QRect(top.topLeft(), bottom.bottomRight()).adjusted(shadowReach(), 0, -shadowReach(), 0).intersected(seen);
        if (!card.isEmpty()) {
            paintShadow(painter, card, cardRadius);
            painter.setPen(Qt::NoPen);
            painter.setBrush(color(Token::Card));
            painter.drawRoundedRect(card, cardRadius, cardRadius);
        }
        row = last + 1;
    }
}

void ProposalList::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    scheduleDelayedItemsLayout(); // narrow rows are taller
}

void ProposalList::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex index = currentIndex();
    switch (event->key()) {
    case Qt::Key_Space:
        return act(index, ProposalPart::Tick);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return act(index, ProposalPart::Preview);
    case Qt::Key_Delete:
        return act(index, ProposalPart::Discard);
    default:
        QListView::keyPressEvent(event);
    }
}

void ProposalList::act(const QModelIndex &index, ProposalPart part)
{
    if (!index.isValid())
        return;
    const std::shared_ptr<const AgentProposal> proposal = m_model.at(index.row()).proposal;
    if (part == ProposalPart::Tick)
        m_model.toggle(index.row());
    else if (part == ProposalPart::Preview && proposal)
        Q_EMIT previewRequested(proposal->id);
    else if (part == ProposalPart::Discard && proposal)
        m_ports.agent.discard({proposal->id});
}

ProposalPart ProposalList::partAt(QPoint place) const
{
    const QModelIndex index = indexAt(place);
    return index.isValid() ? m_row.partAt(visualRect(index), index.row(), place) : ProposalPart::None;
}

void ProposalList::setHovered(const QModelIndex &index, ProposalPart part)
{
    m_row.setHovered(index, part);
    viewport()->setCursor(part == ProposalPart::Preview || part == ProposalPart::Discard ? Qt::PointingHandCursor
                                                                                         : Qt::ArrowCursor);
    viewport()->update();
}

void ProposalList::mouseMoveEvent(QMouseEvent *event)
{
    setHovered(indexAt(event->pos()), partAt(event->pos()));
}

void ProposalList::leaveEvent(QEvent *event)
{
    QListView::leaveEvent(event);
    setHovered({}, ProposalPart::None);
}

void ProposalList::mousePressEvent(QMouseEvent *event)
{
    QListView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        act(indexAt(event->pos()), partAt(event->pos()));
}

void ProposalList::mouseDoubleClickEvent(QMouseEvent *event)
{
    const ProposalPart part = partAt(event->pos());
    // A double click on a tick toggles twice; on a discard button the second click would hit the next row.
    if (part == ProposalPart::Row)
        act(indexAt(event->pos()), ProposalPart::Preview);
    else if (part == ProposalPart::Tick)
        act(indexAt(event->pos()), part);
}

void ProposalList::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    openMenu(viewport()->mapToGlobal(byKey ? visualRect(index).center() : event->pos()));
}

void ProposalList::openMenu(QPoint place)
{
    auto *const menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("agentProposalMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu, currentIndex().row());
    menu->popup(place);
}

void ProposalList::fillMenu(QMenu &menu, int row)
{
    const bool ticked = m_model.index(row).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    const QPersistentModelIndex index = m_model.index(row);
    menu.addAction(ticked ? QStringLiteral("Abwählen") : QStringLiteral("Auswählen"), this,
                   [this, index] { act(index, ProposalPart::Tick); });
    const std::shared_ptr<const AgentProposal> proposal = m_model.at(row).proposal;
    if (!proposal)
        return;
    const QUuid id = proposal->id;
    menu.addAction(QStringLiteral("Ansehen"), this, [this, id] { Q_EMIT previewRequested(id); });
    menu.addAction(QStringLiteral("Im Ordner zeigen"), this,
                   [this, source = proposal->source] { Q_EMIT showRequested(source); });
    if (canKeepInstead(*proposal))
        menu.addAction(QStringLiteral("Stattdessen diese behalten"), this,
                       [this, id] { (void)m_ports.agent.keepInstead(id); });
    menu.addSeparator();
    menu.addAction(QStringLiteral("Vorschlag verwerfen"), this, [this, id] { m_ports.agent.discard({id}); });
    menu.addAction(QStringLiteral("Nicht mehr vorschlagen"), this, [this, id] { m_ports.agent.neverPropose({id}); });
    for (QAction *const action : menu.actions())
        action->setEnabled(!m_ports.agent.running.get());
}

bool ProposalList::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QListView::viewportEvent(event);
    const auto *const help = static_cast<QHelpEvent *>(event);
    const QModelIndex index = indexAt(help->pos());
    const QString tip = index.isValid() ? m_row.toolTip(index.row(), partAt(help->pos())) : QString();
    QToolTip::showText(help->globalPos(), tip, this);
    return true;
}

} // namespace brellin

#include "Features/Screens/NetworkRows.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QLineEdit>
#include <QPainter>

#include <algorithm>

namespace brellin {

namespace {

QString stateText(NetworkRows::State state)
{
    switch (state) {
    case NetworkRows::State::Connecting:
        return QStringLiteral("wird verbunden …");
    case NetworkRows::State::Connected:
        return QStringLiteral("verbunden");
    case NetworkRows::State::Failed:
        return QStringLiteral("nicht erreicht");
    case NetworkRows::State::Unknown:
        return {};
    }
    return {};
}

Token stateInk(NetworkRows::State state)
{
    if (state == NetworkRows::State::Connected)
        return Token::Success;
    return state == NetworkRows::State::Failed ? Token::Danger : Token::Secondary;
}

/// The rectangle of a row's two lines of text.
QRect textPlace(const QRect &row)
{
    return row.adjusted(scaled(46), scaled(6), -scaled(12), -scaled(6));
}

} // namespace

NetworkRows::NetworkRows(NetworkServers &servers, QObject *parent)
    : QAbstractListModel(parent)
    , m_servers(servers)
    , m_rows(servers.servers.get())
{
    servers.servers.observe(this, [this](const std::vector<NetworkServer> &next) { follow(next); });
}

void NetworkRows::follow(const std::vector<NetworkServer> &next)
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before) {
        const auto found = std::ranges::find(next, address(index), &NetworkServer::address);
        after << (found == next.end() ? QModelIndex() : createIndex(static_cast<int>(found - next.begin()), 0));
    }
    m_rows = next;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

void NetworkRows::setState(const QString &address, State state)
{
    m_states[address] = state;
    const auto found = std::ranges::find(m_rows, address, &NetworkServer::address);
    if (found != m_rows.end())
        Q_EMIT dataChanged(index(static_cast<int>(found - m_rows.begin())),
                           index(static_cast<int>(found - m_rows.begin())));
}

NetworkRows::State NetworkRows::state(const QString &address) const
{
    const auto found = m_states.find(address);
    return found == m_states.end() ? State::Unknown : found->second;
}

int NetworkRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant NetworkRows::data(const QModelIndex &index, int role) const
{
    const NetworkServer &server = m_rows[static_cast<std::size_t>(index.row())];
    const State now = state(server.address);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return server.name;
    case Qt::ToolTipRole:
    case Address:
        return server.address;
    case StateText:
        return stateText(now);
    case StateOf:
        return static_cast<int>(now);
    case Qt::AccessibleTextRole: {
        QStringList parts{server.name, server.address};
        if (now != State::Unknown)
            parts << stateText(now);
        return parts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

bool NetworkRows::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || value.toString().trimmed().isEmpty())
        return false;
    const Result<void> renamed = m_servers.rename(address(index), value.toString().trimmed());
    if (!renamed)
        Q_EMIT failed(renamed.error().message);
    return renamed.has_value();
}

Qt::ItemFlags NetworkRows::flags(const QModelIndex &) const
{
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

QSize NetworkRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, scaled(48)};
}

void NetworkRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool selected = option.state & QStyle::State_Selected;
    const QRectF ground = QRectF(option.rect).adjusted(1, 1, -1, -1);
    painter->setPen(selected && option.state & QStyle::State_HasFocus ? QPen(color(Token::Accent), 2)
                                                                      : QPen(Qt::NoPen));
    painter->setBrush(selected                                 ? color(Token::AccentSoft)
                      : option.state & QStyle::State_MouseOver ? faded(Token::Text, 0.045)
                                                               : QColor(Qt::transparent));
    painter->drawRoundedRect(ground, 8, 8);
    const int side = scaled(20);
    Symbols::paint(*painter,
                   QRect(option.rect.left() + scaled(14), option.rect.center().y() - side / 2 + 1, side, side),
                   QStringLiteral("network"), color(Token::Accent));
    const auto state = static_cast<NetworkRows::State>(index.data(NetworkRows::StateOf).toInt());
    QRect place = textPlace(option.rect);
    painter->setFont(sizedFont(0.92));
    painter->setPen(color(stateInk(state)));
    const QString stateWords = index.data(NetworkRows::StateText).toString();
    painter->drawText(place, Qt::AlignRight | Qt::AlignVCenter, stateWords);
    place.setRight(place.right() - painter->fontMetrics().horizontalAdvance(stateWords) - scaled(8));
    painter->setPen(color(Token::Secondary));
    painter->drawText(
        place, Qt::AlignLeft | Qt::AlignBottom,
        painter->fontMetrics().elidedText(index.data(NetworkRows::Address).toString(), Qt::ElideMiddle, place.width()));
    painter->setFont(sizedFont(1, QFont::DemiBold));
    painter->setPen(color(Token::Text));
    painter->drawText(place, Qt::AlignLeft | Qt::AlignTop,
                      painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, place.width()));
    painter->restore();
}

QWidget *NetworkRowDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *const editor = new QLineEdit(parent);
    editor->setObjectName(QStringLiteral("networkRename"));
    editor->setAccessibleName(QStringLiteral("Name des Servers"));
    editor->setProperty("kind", QStringLiteral("row"));
    return editor;
}

void NetworkRowDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                              const QModelIndex &) const
{
    const QRect place = textPlace(option.rect);
    editor->setGeometry(place.left() - scaled(5), option.rect.top() + scaled(3), place.width(), scaled(26));
}

} // namespace brellin

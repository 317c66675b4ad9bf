#pragma once

#include "Places/NetworkServers.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

#include <map>

namespace brellin {

/// The remembered servers and their connection states.
class NetworkRows : public QAbstractListModel {
    Q_OBJECT
public:
    enum class State { Unknown, Connecting, Connected, Failed };
    enum Role { Address = Qt::UserRole, StateText, StateOf };

    NetworkRows(NetworkServers &servers, QObject *parent);

    /// Sets the connection state of a server.
    void setState(const QString &address, State state);
    State state(const QString &address) const;
    QString address(const QModelIndex &index) const { return index.data(Address).toString(); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    Q_SIGNAL void failed(const QString &message);

private:
    void follow(const std::vector<NetworkServer> &next);

    NetworkServers &m_servers;
    std::vector<NetworkServer> m_rows;
    std::map<QString, State> m_states; ///< by address; not stored
};

/// Paints a server: symbol, name, address below it, state at the right.
class NetworkRowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};

} // namespace brellin

#pragma once

#include "Sidebar/Screens/SidebarRow.h"
#include "Sidebar/Screens/SidebarView.h"

#include <QAbstractListModel>

#include <set>
#include <vector>

namespace brellin {

/// The rows of one half of the sidebar, built from its models. A rebuild moves persistent indexes with their rows, so
/// focus and editors stay.
class SidebarRows : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { Key = Qt::UserRole };

    /// Places: quick access, folders and devices. Marks: tags, Trash and assistants, always on the screen.
    enum class Half { Places, Marks };
    SidebarRows(SidebarSources sources, Half half, QObject *parent);

    const SidebarRow &row(const QModelIndex &index) const { return m_rows[static_cast<std::size_t>(index.row())]; }
    QModelIndex indexOf(const QString &key) const;

    /// Sets the active pane's place, whose row is highlighted.
    void setCurrent(const Place &place);
    /// Sets the row clicked last, which is highlighted if several rows lead to the current place.
    void setChosen(const QString &key);
    bool isCurrent(const QModelIndex &index) const;
    QModelIndex current() const { return indexOf(m_currentKey); }

    void setAgentBadge(int number);
    /// Marks the volume as being ejected.
    void setEjecting(const Location &volume, bool ejecting);
    void setFolded(const QString &section, bool folded);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// Emitted when another row is highlighted.
    Q_SIGNAL void currentMoved();
    Q_SIGNAL void failed(const QString &message);

private:
    void rebuild();
    void follow(std::vector<SidebarRow> next);
    void findCurrent();
    bool addHead(std::vector<SidebarRow> &rows, const QString &key, const QString &title) const;
    void addQuick(std::vector<SidebarRow> &rows) const;
    void addFolders(std::vector<SidebarRow> &rows) const;
    void addDevices(std::vector<SidebarRow> &rows) const;
    void addTags(std::vector<SidebarRow> &rows) const;
    void addAssistants(std::vector<SidebarRow> &rows) const;
    void takeRoots();

    SidebarSources m_sources;
    const Half m_half;
    std::vector<SidebarRow> m_rows;
    std::set<Location> m_ejecting;
    std::optional<Place> m_current;
    QString m_chosenKey;
    QString m_currentKey; ///< key of the highlighted row; empty if none
    int m_agentBadge = 0;
};

} // namespace brellin

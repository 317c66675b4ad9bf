#pragma once

#include "History/HistoryList.h"
#include "Places/KnownFolders.h"

#include <QTreeWidget>

namespace brellin {

/// A row of the history: a heading, a step, or one of a step's entries.
class HistoryRow : public QTreeWidgetItem {
public:
    enum class Kind { Day, Trail, Step, Entry };
    /// Identifies a row when the list is built again, except a day.
    struct Key {
        Kind kind = Kind::Day;
        QString trail; ///< of a search: its oldest step and place
        QUuid step;
        int entry = 0; ///< number in the step

        bool operator==(const Key &) const = default;
    };
    HistoryRow(Kind wanted, const QStringList &texts) : QTreeWidgetItem(texts), kind(wanted) {}

    Key key() const { return {kind, trail, step, entry}; }

    Kind kind;
    QString trail;
    int entry = 0;
    HistoryStep::By by = HistoryStep::By::User;
    QUuid step;     ///< null of headings
    Location place; ///< what it can show; empty: nothing
    bool takenBack = false;
};

/// The history as a tree: days with their steps, or trails of the entries that were searched. Several entries of a step
/// appear when it is opened.
class HistoryRows : public QTreeWidget {
    Q_OBJECT
public:
    HistoryRows(const KnownFolders &folders, QWidget *parent);

    /// Both keep the current row, the opened steps and the scroll position where the same rows are shown.
    void showSteps(const std::vector<HistoryStep> &steps, const HistoryFilter &filter, QDate today);
    void showTrails(const std::vector<FoundTrail> &trails, const HistoryFilter &filter, Instant now);

    const HistoryRow *current() const;
    bool isEmpty() const { return topLevelItemCount() == 0; }

protected:
    void drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override;

private:
    void fill(QTreeWidgetItem *item);
    std::vector<HistoryRow::Key> opened() const;
    void showAgain(const std::function<void()> &build);
    HistoryRow *rowOf(const HistoryStep &step) const;
    HistoryRow *rowOf(const HistoryStep &step, const HistoryEntry &entry, HistoryRow::Kind kind) const;
    HistoryRow *rowOf(const FoundTrail &found, Instant now) const;

    const KnownFolders &m_folders;
    std::map<QUuid, HistoryStep> m_several; ///< steps whose entries are filled in later
};

} // namespace brellin

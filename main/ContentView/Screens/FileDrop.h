#pragma once

#include "Base/Location.h"
#include "Disk/MountTable.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

class QDropEvent;
class QMimeData;
class QWidget;

namespace brellin {

enum class DropKind { Copy, Move };

/// Files dropped on a folder.
struct DroppedFiles {
    std::vector<Location> sources;
    Location destination;
    DropKind kind = DropKind::Copy;
};

/// What a drop does: Ctrl copies, Shift moves; otherwise moves within a volume and copies between volumes.
DropKind dropKind(Qt::KeyboardModifiers keys, bool sameVolume);

/// Drag data of the entries in the formats of common file managers.
QMimeData *dragData(const std::vector<Location> &entries);
std::vector<Location> draggedFiles(const QMimeData &data);

/// Accepts file drops on a widget, and shows by the pointer what a drop would do. Refuses dropping a folder into
/// itself, and moving entries to the folder they are in.
class FileDrop : public QObject {
    Q_OBJECT
public:
    /// Returns the folder at a point of the widget, or none.
    using FolderAt = std::function<std::optional<Location>(QPoint)>;
    FileDrop(QWidget *target, FolderAt folderAt);

    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);
    /// Emitted with the folder that a drop at this point goes to; none if it would be refused or the drag leaves.
    Q_SIGNAL void over(const std::optional<brellin::Location> &folder, QPoint at);
    /// The drag has rested over a folder, which opens so that the drop can go further into it.
    Q_SIGNAL void sprung(const brellin::Location &folder, QPoint at);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::optional<DroppedFiles> planned(const QDropEvent &event) const;
    void show(QDropEvent &event, const std::optional<DroppedFiles> &plan);

    void awaitSpring(const QDropEvent &event);
    void endSpring();

    FolderAt m_folderAt;
    QTimer m_spring;
    Location m_springing; ///< the folder that the timer runs for
    QPoint m_at;
    std::vector<Mount> m_mounts; ///< read when the drag enters
};

} // namespace brellin

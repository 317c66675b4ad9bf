#pragma once

#include "Base/Location.h"
#include "Disk/MountTable.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

class QDropEvent;
class QMimeData;
class QWidget;

namespace brellin {

enum class DropKind { Copy, Move };

/// Files that were dropped onto a folder.
struct DroppedFiles {
    std::vector<Location> sources;
    Location destination;
    DropKind kind = DropKind::Copy;
};

/// What a drop does: Strg copies, Umschalt moves; else it moves on one volume and copies to another.
DropKind dropKind(Qt::KeyboardModifiers keys, bool sameVolume);

/// The files of a drag, in the forms of all file managers; and those that come with one, empty where it brings none.
QMimeData *dragData(const std::vector<Location> &entries);
std::vector<Location> draggedFiles(const QMimeData &data);

/// Lets files be dropped onto a widget. Where they would go is asked of `folderAt`; the pointer shows what would happen. A
/// folder is not dropped onto itself, and nothing where it is already.
class FileDrop : public QObject {
    Q_OBJECT
public:
    /// `folderAt` gives the folder for a point of the widget, or nothing.
    using FolderAt = std::function<std::optional<Location>(QPoint)>;
    FileDrop(QWidget *target, FolderAt folderAt);

    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);
    /// The folder that a drag is over; nothing when it has gone.
    Q_SIGNAL void over(const std::optional<brellin::Location> &folder);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::optional<DroppedFiles> planned(const QDropEvent &event) const;
    void show(QDropEvent &event, const std::optional<DroppedFiles> &plan);

    FolderAt m_folderAt;
    std::vector<Mount> m_mounts; ///< as they were when the drag came in
};

} // namespace brellin

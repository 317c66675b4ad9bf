#pragma once

#include "Base/Published.h"

#include <QStringList>
#include <QUuid>

#include <set>

namespace brellin {

class FileOperations;
class TransferQueue;
class UserUndo;
class VolumeList;

/// What went wrong with work that no window owns: kept until the user is in a window that says it. Lives on the main thread.
class Notices : public Model<Notices> {
public:
    Published<QStringList> unread;

    void add(const QString &message);
    /// All of them, for a window that the user is in.
    QStringList take();

    /// From now on hears what fails in these. All of them outlive the notices or go with them.
    void hear(FileOperations &operations, UserUndo &undo, TransferQueue &transfers, VolumeList &volumes);
    /// A pane shows itself what became of its transfers. Once it has gone, that is said here.
    void paneGone(const QUuid &pane);

private:
    std::set<QUuid> m_gonePanes;
};

} // namespace brellin

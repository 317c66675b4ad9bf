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

/// Failures of work whose window or pane may be closed, kept until a focused window shows them. Lives on the main
/// thread.
class Notices : public Model<Notices> {
public:
    Published<QStringList> unread;

    void add(const QString &message);
    /// Returns all messages and clears them. Call from the focused window.
    QStringList take();

    /// Collects errors of these from now on. All must outlive the notices or be destroyed with them.
    void hear(FileOperations &operations, UserUndo &undo, TransferQueue &transfers, VolumeList &volumes);
    /// A pane reports errors of its own transfers. Call when it is closed, so that they are collected here instead.
    void paneGone(const QUuid &pane);

private:
    std::set<QUuid> m_gonePanes;
};

} // namespace brellin

#include "ContentView/Screens/FileDrop.h"

#include "FileOperations/ClipboardFiles.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include <algorithm>

namespace brellin {

DropKind dropKind(Qt::KeyboardModifiers keys, bool sameVolume)
{
    if (keys.testFlag(Qt::ControlModifier))
        return DropKind::Copy;
    if (keys.testFlag(Qt::ShiftModifier))
        return DropKind::Move;
    return sameVolume ? DropKind::Move : DropKind::Copy;
}

QMimeData *dragData(const std::vector<Location> &entries)
{
    auto *const data = new QMimeData;
    for (const auto &[form, bytes] : clipboardFormsOf({ClipboardFiles::Purpose::Copy, entries}))
        data->setData(QString::fromLatin1(form), bytes);
    return data;
}

std::vector<Location> draggedFiles(const QMimeData &data)
{
    const auto files = clipboardFilesFrom([&data](const char *form) {
        // Of a drag only the list counts: "cut" is a word of the clipboard.
        return qstrcmp(form, clipboardForms::uriList) == 0 ? data.data(QString::fromLatin1(form)) : QByteArray();
    });
    return files ? files->entries : std::vector<Location>();
}

FileDrop::FileDrop(QWidget *target, FolderAt folderAt) : QObject(target), m_folderAt(std::move(folderAt))
{
    target->setAcceptDrops(true);
    target->installEventFilter(this);
}

/// Decided by the table of mounts, without touching a volume that may not answer.
std::optional<DroppedFiles> FileDrop::planned(const QDropEvent &event) const
{
    const std::optional<Location> folder = m_folderAt(event.position().toPoint());
    DroppedFiles plan{draggedFiles(*event.mimeData()), folder.value_or(Location()), DropKind::Copy};
    if (!folder || plan.sources.empty())
        return std::nullopt;
    const Mount *const to = mountHolding(m_mounts, folder->native());
    const auto onIt = [&](const Location &source) { return mountHolding(m_mounts, source.native()) == to; };
    plan.kind = dropKind(event.modifiers(), to && std::ranges::all_of(plan.sources, onIt));
    for (const Location &source : plan.sources) {
        const bool intoItself = isAtOrBelow(*folder, source);
        const bool there = source.parent_path() == *folder && plan.kind == DropKind::Move;
        if (intoItself || there)
            return std::nullopt;
    }
    return plan;
}

void FileDrop::show(QDropEvent &event, const std::optional<DroppedFiles> &plan)
{
    if (!plan) {
        event.setDropAction(Qt::IgnoreAction);
        event.ignore();
        Q_EMIT over(std::nullopt);
        return;
    }
    event.setDropAction(plan->kind == DropKind::Move ? Qt::MoveAction : Qt::CopyAction);
    event.accept();
    Q_EMIT over(plan->destination);
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    const bool carries =
        event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove || event->type() == QEvent::Drop;
    // A drag without files is somebody else's: entries that change places, tabs.
    if (carries &&
        !static_cast<QDropEvent *>(event)->mimeData()->hasFormat(QString::fromLatin1(clipboardForms::uriList)))
        return false;
    switch (event->type()) {
    case QEvent::DragEnter:
        m_mounts = currentMountTable();
        // Accepted as a whole: each point then says for itself what it takes.
        static_cast<QDropEvent *>(event)->acceptProposedAction();
        return true;
    case QEvent::DragMove: {
        auto *const drag = static_cast<QDropEvent *>(event);
        show(*drag, planned(*drag));
        return true;
    }
    case QEvent::DragLeave:
        Q_EMIT over(std::nullopt);
        return false;
    case QEvent::Drop: {
        auto *const drop = static_cast<QDropEvent *>(event);
        const std::optional<DroppedFiles> plan = planned(*drop);
        show(*drop, plan);
        Q_EMIT over(std::nullopt);
        if (!plan)
            return true;
        // We move ourselves: whoever began the drag must not remove anything.
        drop->setDropAction(Qt::CopyAction);
        Q_EMIT dropped(*plan);
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace brellin

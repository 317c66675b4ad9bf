#include "ContentView/Screens/FileDrop.h"

#include "FileOperations/ClipboardFiles.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds springDelay{800};

} // namespace

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
        // Ignore clipboard formats such as "cut": the drop's modifiers decide.
        return qstrcmp(form, clipboardForms::uriList) == 0 ? data.data(QString::fromLatin1(form)) : QByteArray();
    });
    return files ? files->entries : std::vector<Location>();
}

FileDrop::FileDrop(QWidget *target, FolderAt folderAt) : QObject(target), m_folderAt(std::move(folderAt))
{
    target->setAcceptDrops(true);
    target->installEventFilter(this);
    m_spring.setObjectName(QStringLiteral("spring"));
    m_spring.setParent(this);
    m_spring.setSingleShot(true);
    m_spring.setInterval(springDelay);
    connect(&m_spring, &QTimer::timeout, this, [this] { Q_EMIT sprung(m_springing, m_at); });
}

/// Compares volumes by the mount table only, since a volume may not respond.
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
        Q_EMIT over(std::nullopt, {});
        return;
    }
    event.setDropAction(plan->kind == DropKind::Move ? Qt::MoveAction : Qt::CopyAction);
    event.accept();
    Q_EMIT over(plan->destination, event.position().toPoint());
}

/// Also where a drop is refused, e.g. for the folder that the files are in. A dragged folder does not open.
void FileDrop::awaitSpring(const QDropEvent &event)
{
    m_at = event.position().toPoint();
    const Location folder = m_folderAt(m_at).value_or(Location());
    if (folder == m_springing)
        return;
    endSpring();
    const std::vector<Location> sources = draggedFiles(*event.mimeData());
    m_springing = folder;
    if (!folder.empty() && std::ranges::none_of(sources, [&](const Location &one) { return isAtOrBelow(folder, one); }))
        m_spring.start();
}

void FileDrop::endSpring()
{
    m_spring.stop();
    m_springing.clear();
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    const bool carries =
        event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove || event->type() == QEvent::Drop;
    // Leave drags without files to others, e.g. reordered entries or tabs.
    if (carries &&
        !static_cast<QDropEvent *>(event)->mimeData()->hasFormat(QString::fromLatin1(clipboardForms::uriList)))
        return false;
    switch (event->type()) {
    case QEvent::DragEnter:
        m_mounts = currentMountTable();
        endSpring(); // of a drag that ended without leaving
        // Accept here in any case; each move then decides for its point.
        static_cast<QDropEvent *>(event)->acceptProposedAction();
        return true;
    case QEvent::DragMove: {
        auto *const drag = static_cast<QDropEvent *>(event);
        show(*drag, planned(*drag));
        awaitSpring(*drag);
        return true;
    }
    case QEvent::DragLeave:
        endSpring();
        Q_EMIT over(std::nullopt, {});
        return false;
    case QEvent::Drop: {
        auto *const drop = static_cast<QDropEvent *>(event);
        const std::optional<DroppedFiles> plan = planned(*drop);
        show(*drop, plan);
        endSpring();
        Q_EMIT over(std::nullopt, {});
        if (!plan)
            return true;
        // Report a copy, so that the drag's source does not delete moved files; the transfer does.
        drop->setDropAction(Qt::CopyAction);
        Q_EMIT dropped(*plan);
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace brellin

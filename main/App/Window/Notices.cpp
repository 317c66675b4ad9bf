#include "App/Window/Notices.h"

#include "FileOperations/FileOperations.h"
#include "Places/VolumeList.h"
#include "Transfers/TransferQueue.h"

namespace brellin {

namespace {

/// Dismisses each error at once, since publishing an equal one again would notify nobody.
template <class Source>
void hearErrors(Source &source, Notices &notices)
{
    source.errorMessage.observe(&notices, [&source, &notices](const std::optional<QString> &message) {
        if (!message)
            return;
        source.dismissError();
        notices.add(*message);
    });
}

} // namespace

void Notices::hear(FileOperations &operations, UserUndo &undo, TransferQueue &transfers, VolumeList &volumes)
{
    hearErrors(operations, *this);
    hearErrors(undo, *this);
    hearErrors(volumes, *this);
    transfers.lastFinished.observe(this, [this](const std::optional<FinishedTransfer> &last) {
        const std::optional<QString> message = last->errorMessage();
        if (message && m_gonePanes.contains(last->pane))
            add(*message);
    });
}

void Notices::paneGone(const QUuid &pane)
{
    m_gonePanes.insert(pane);
}

void Notices::add(const QString &message)
{
    publish(unread, unread.get() + QStringList(message));
}

QStringList Notices::take()
{
    const QStringList all = unread.get();
    publish(unread, QStringList());
    return all;
}

} // namespace brellin

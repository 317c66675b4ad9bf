#pragma once

#include "Base/Mailbox.h"
#include "Disk/MountWorkers.h"

#include <QPointer>

#include <utility>

namespace brellin {

/// Does `work` on a worker for the volume at `where`, and gives its answer to `then` on the main thread, unless `receiver`
/// has gone by then. For what need not be dropped or awaited; else see FileCall.
template <class Work, class Then>
void onWorker(MountWorkers &workers, const Location &where, MountWorkers::Turn turn, QObject *receiver, Work work,
              Then then)
{
    Mailbox &home = Mailbox::ofMainThread();
    workers.run(where, turn, [&home, guard = QPointer(receiver), work = std::move(work), then = std::move(then)] {
        auto answer = work();
        home.post([guard, then, answer = std::move(answer)] {
            if (guard)
                then(answer);
        });
    });
}

} // namespace brellin

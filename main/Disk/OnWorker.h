#pragma once

#include "Base/Mailbox.h"
#include "Disk/MountWorkers.h"

#include <QPointer>

#include <utility>

namespace brellin {

/// Runs `work` on a worker for the volume of `where`, and passes its result to `then` on the main thread, unless
/// `receiver` is destroyed by then. Use FileCall if the call must be dropped or awaited.
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

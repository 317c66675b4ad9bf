#pragma once

#include "Disk/MountWorkers.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>

#include <utility>

namespace brellin {

/// Does `work` on a worker for the volume at `where`, and gives its answer to `then` on the main thread, unless `receiver`
/// has gone by then. For what need not be dropped or awaited; else see FileCall.
template <class Work, class Then>
void onWorker(MountWorkers &workers, const Location &where, MountWorkers::Turn turn, QObject *receiver, Work work,
              Then then)
{
    workers.run(where, turn, [guard = QPointer(receiver), work = std::move(work), then = std::move(then)] {
        auto answer = work();
        QMetaObject::invokeMethod(QCoreApplication::instance(), [guard, then, answer = std::move(answer)] {
            if (guard)
                then(answer);
        });
    });
}

} // namespace brellin

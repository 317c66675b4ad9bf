#pragma once

#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <memory>

namespace brellin {

/// A one-thread pool for work that may block forever, e.g. on a server that does not respond. On destruction of the
/// last owner waits up to `patience`, then leaks the thread and the pool. Work must not reference the owner.
inline std::shared_ptr<QThreadPool> abandonablePool(std::chrono::milliseconds patience = {})
{
    const std::shared_ptr<QThreadPool> pool(new QThreadPool, [patience](QThreadPool *ending) {
        if (ending->waitForDone(static_cast<int>(patience.count())))
            delete ending;
    });
    pool->setMaxThreadCount(1);
    return pool;
}

/// Call before starting new work in place of abandoned work, which may never return: allows one more thread, up to a
/// small limit. Beyond the limit new work waits.
inline void passAbandonedWork(QThreadPool &pool)
{
    constexpr int most = 8;
    pool.setMaxThreadCount(std::min(pool.activeThreadCount() + 1, most));
}

} // namespace brellin

#pragma once

#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <memory>

namespace brellin {

/// A pool of one thread for work that may hang for ever, as on a server that does not answer. When the last owner goes, it is
/// given `patience` to end; then it is left to its fate, with the pool. Its work must hold nothing of its owner.
inline std::shared_ptr<QThreadPool> abandonablePool(std::chrono::milliseconds patience = {})
{
    const std::shared_ptr<QThreadPool> pool(new QThreadPool, [patience](QThreadPool *ending) {
        if (ending->waitForDone(static_cast<int>(patience.count())))
            delete ending;
    });
    pool->setMaxThreadCount(1);
    return pool;
}

/// Before new work takes the place of what was given up: that may never come back, and must not hold up what follows. Beyond
/// a few such threads the new work waits.
inline void passAbandonedWork(QThreadPool &pool)
{
    constexpr int most = 8;
    pool.setMaxThreadCount(std::min(pool.activeThreadCount() + 1, most));
}

} // namespace brellin

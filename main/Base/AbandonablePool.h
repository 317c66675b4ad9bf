#pragma once

#include <QThreadPool>

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

} // namespace brellin

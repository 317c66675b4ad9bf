#include "System/DeferredUserDefaults.h"

#include "Base/PoolWork.h"

#include <QThread>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace brellin {

/// The result for a thread that waits for its value to be written.
struct DeferredUserDefaults::Waiting {
    std::optional<Result<void>> result;
};

DeferredUserDefaults::~DeferredUserDefaults()
{
    waitUntilWritten();
}

std::optional<QVariant> DeferredUserDefaults::value(const QString &key) const
{
    {
        const std::scoped_lock lock(m_mutex);
        const auto newest = std::ranges::find(m_writes.rbegin(), m_writes.rend(), key, &Write::key);
        if (newest != m_writes.rend())
            return newest->value;
    }
    return m_stored.value(key);
}

Result<void> DeferredUserDefaults::setValue(const QString &key, const QVariant &value)
{
    std::unique_lock lock(m_mutex);
    if (QThread::currentThread() == m_mailbox.thread()) {
        append({key, value});
        return {};
    }
    Waiting waiting;
    append({key, value, &waiting});
    m_changed.wait(lock, [&] { return waiting.result.has_value(); });
    return *std::move(waiting.result);
}

/// Called with the mutex held. A value that has not been begun is replaced if nothing was set after it: a slider sets
/// many.
void DeferredUserDefaults::append(Write write)
{
    const bool lastIsUnbegun = m_writes.size() > 1 && !m_writes.back().waiting;
    if (lastIsUnbegun && !write.waiting && m_writes.back().key == write.key)
        m_writes.back().value = std::move(write.value);
    else
        m_writes.push_back(std::move(write));
    if (!std::exchange(m_atWork, true))
        PoolWork::start(m_pool, [this] { writeAll(); }, {});
}

/// On the worker. The first element stays in the queue while it is written, so that `value` finds it.
void DeferredUserDefaults::writeAll()
{
    std::unique_lock lock(m_mutex);
    while (!m_writes.empty()) {
        const QString key = m_writes.front().key;
        const QVariant value = m_writes.front().value;
        lock.unlock();
        Result<void> stored = m_stored.setValue(key, value);
        lock.lock();
        end(std::move(stored));
    }
    m_atWork = false;
    m_changed.notify_all();
}

/// Called with the mutex held: takes the written value off the queue.
void DeferredUserDefaults::end(Result<void> stored)
{
    Waiting *const waiting = m_writes.front().waiting;
    m_writes.pop_front();
    if (waiting)
        waiting->result = std::move(stored);
    else if (!stored) {
        m_untold.push_back(stored.error());
        m_mailbox.post([this] { tellFailures(); });
    }
    m_changed.notify_all();
}

void DeferredUserDefaults::tellFailures()
{
    std::unique_lock lock(m_mutex);
    const std::vector<Failure> untold = std::exchange(m_untold, {});
    lock.unlock();
    for (const Failure &why : untold) {
        if (m_failed)
            m_failed(why);
    }
}

void DeferredUserDefaults::waitUntilWritten()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_atWork; });
}

Result<void> DeferredUserDefaults::finish(std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, patience, [this] { return !m_atWork; }))
        return failure(Failure::system(ETIMEDOUT));
    const std::vector<Failure> untold = std::exchange(m_untold, {});
    return untold.empty() ? Result<void>() : failure(untold.back());
}

/// Keeps the order: what was set before is not written into the replaced text.
Result<void> DeferredUserDefaults::replace(const QString &key, const std::optional<QByteArray> &json)
{
    waitUntilWritten();
    return m_stored.replace(key, json);
}

} // namespace brellin

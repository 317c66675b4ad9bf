#pragma once

#include "Base/Mailbox.h"
#include "System/UserDefaults.h"

#include <QThreadPool>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace brellin {

/// Settings whose plain values are written on a worker, so that a click on a setting waits neither for other processes
/// nor for the disk. Values are written in the order in which they were set; until then they are read from here.
///
/// `setValue` on the main thread always succeeds. A value that cannot be stored is reported to the callback of
/// `onFailure`, and the stored one applies again. On other threads `setValue` returns once the value is written.
/// Stored lists are changed by the calling thread, as `change` needs its answer.
class DeferredUserDefaults : public UserDefaults {
public:
    /// `stored` must outlive this object. Created on the main thread.
    explicit DeferredUserDefaults(UserDefaults &stored) : m_stored(stored) {}
    /// Waits until everything is written.
    ~DeferredUserDefaults() override;

    /// Sets a callback for values that could not be stored, called on the main thread.
    void onFailure(std::function<void(const Failure &)> failed) { m_failed = std::move(failed); }
    /// Waits until everything set so far is written. Returns the last failure that `onFailure` has not reported, since
    /// its callback may not be called any more; a timeout if writing takes longer than `patience`.
    Result<void> finish(std::chrono::milliseconds patience);

    std::optional<QVariant> value(const QString &key) const override;
    Result<void> setValue(const QString &key, const QVariant &value) override;
    Result<std::optional<QByteArray>> read(const QString &key) const override { return m_stored.read(key); }
    std::optional<StoredVersion> version(const QString &key) const override { return m_stored.version(key); }
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override
    {
        return m_stored.readLastGood(key);
    }
    Location fileOf(const QString &key) const override { return m_stored.fileOf(key); }
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override
    {
        return m_stored.update(key, change);
    }
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override;

private:
    struct Waiting;
    struct Write {
        QString key;
        QVariant value;
        Waiting *waiting = nullptr; ///< the thread that waits for the result, if any
    };

    void append(Write write);
    void writeAll();
    void end(Result<void> stored);
    void tellFailures();
    void waitUntilWritten();

    UserDefaults &m_stored;
    std::function<void(const Failure &)> m_failed;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Write> m_writes; ///< the first one is being written
    std::vector<Failure> m_untold;
    bool m_atWork = false; ///< the worker still uses this object
    Mailbox m_mailbox;
    QThreadPool m_pool; ///< last: its destruction waits for the worker
};

} // namespace brellin

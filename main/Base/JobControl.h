#pragma once

#include <QString>

#include <atomic>
#include <mutex>

namespace brellin {

/// Thread-safe link between long-running work and its owner: the work polls the cancel flag and updates the counters,
/// the owner cancels and samples. The work defines the unit of the counters (files, bytes).
class JobControl {
public:
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    bool cancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

    void setTotal(qint64 total) { m_total.store(total, std::memory_order_relaxed); }
    void setDone(qint64 done) { m_done.store(done, std::memory_order_relaxed); }
    void advance(qint64 by = 1) { m_done.fetch_add(by, std::memory_order_relaxed); }
    qint64 total() const { return m_total.load(std::memory_order_relaxed); }
    qint64 done() const { return m_done.load(std::memory_order_relaxed); }

    /// The current stage of the work ("Suche doppelte Dateien …"); resets the counters.
    void setStage(const QString &stage)
    {
        const std::scoped_lock lock(m_mutex);
        m_stage = stage;
        m_done = 0;
        m_total = 0;
    }
    QString stage() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_stage;
    }

    /// What the work is processing, for the progress line ("Rechnung.pdf").
    void setDetail(const QString &detail)
    {
        const std::scoped_lock lock(m_mutex);
        m_detail = detail;
    }
    QString detail() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_detail;
    }

private:
    std::atomic<bool> m_cancelled = false;
    std::atomic<qint64> m_total = 0;
    std::atomic<qint64> m_done = 0;
    mutable std::mutex m_mutex;
    QString m_stage;
    QString m_detail;
};

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Transfers/TransferStep.h"

#include <QString>

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace brellin {

/// State shared by a transfer's worker and its job. Thread-safe.
class TransferState {
public:
    struct Progress {
        std::int64_t itemBase = 0; ///< bytes of finished steps
        std::int64_t inItem = 0;   ///< bytes of the current step so far, including those of the current file
        std::int64_t files = 0;    ///< number of finished files
        QString name;              ///< entry being copied
        bool cancelled = false;
        bool paused = false;
        bool flushing = false; ///< everything is copied and being flushed

        std::int64_t bytes() const { return itemBase + inItem; }
    };
    Progress progress() const;

    // Called by the job
    void cancel();
    void setPaused(bool paused);

    // Called by the worker
    bool cancelled() const { return m_control.cancelled(); }
    /// For copying, which checks it often enough to stop within 100 ms.
    const JobControl &control() const { return m_control; }
    /// For shutdown, which may only cancel, from any thread.
    static std::shared_ptr<JobControl> controlOf(const std::shared_ptr<TransferState> &state)
    {
        return {state, &state->m_control};
    }
    void beginEntry(const QString &name);
    /// Sets the progress of the current step. Blocks while paused.
    void advance(const QString &name, std::int64_t bytes, std::int64_t files);
    /// Blocks while paused, until resumed or cancelled.
    void waitWhilePaused();
    void setFlushing(bool flushing);
    void finishStep(const TransferSize &size);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Progress m_progress;
    std::int64_t m_filesBefore = 0; ///< number finished before the current step
    JobControl m_control;
};

} // namespace brellin

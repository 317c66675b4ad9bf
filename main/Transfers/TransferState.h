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

/// What the worker of a transfer and its job share; everything under one lock.
class TransferState {
public:
    struct Progress {
        std::int64_t itemBase = 0; ///< bytes of finished steps
        std::int64_t inItem = 0;   ///< bytes of finished files within the current step
        std::int64_t inFile = 0;   ///< bytes copied of the current file
        std::int64_t files = 0;    ///< files finished
        QString name;              ///< the entry being copied
        bool cancelled = false;
        bool paused = false;
        bool flushing = false; ///< everything is copied, and the disk is writing it

        std::int64_t bytes() const { return itemBase + inItem + inFile; }
    };
    Progress progress() const;

    // Called by the job.
    void cancel();
    void setPaused(bool paused);

    // Called by the worker.
    bool cancelled() const { return m_control.cancelled(); }
    /// What a copy looks at to stop within 100 ms.
    const JobControl &control() const { return m_control; }
    /// For the end of the program, which cancels through this alone and from any thread.
    static std::shared_ptr<JobControl> controlOf(const std::shared_ptr<TransferState> &state)
    {
        return {state, &state->m_control};
    }
    void beginEntry(const QString &name);
    /// `bytes` and `files` of the current step so far. Waits here while paused.
    void advance(const QString &name, std::int64_t bytes, std::int64_t files);
    /// Waits until the transfer is not paused, or cancelled.
    void waitWhilePaused();
    void setFlushing(bool flushing);
    void finishStep(const TransferSize &size);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Progress m_progress;
    std::int64_t m_filesBefore = 0; ///< finished before the current step
    JobControl m_control;
};

} // namespace brellin

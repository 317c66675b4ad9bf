#pragma once

#include "Records/RecordedStep.h"
#include "System/FileLock.h"

namespace brellin {

class StepRecords;

/// A step in progress: noted on disk before it starts, and locked while its process lives. `StepRecords::settle`
/// determines the outcome of steps that were interrupted.
class OpenStep {
public:
    /// Records nothing.
    OpenStep() = default;
    /// An unsettled step is discarded, as if it had not happened.
    ~OpenStep();
    OpenStep(OpenStep &&other) noexcept;
    OpenStep &operator=(OpenStep &&) = delete;
    OpenStep(const OpenStep &) = delete;
    OpenStep &operator=(const OpenStep &) = delete;

    /// Records what the step did; for an undo, the entries that were undone. Blocking.
    void settle(std::vector<StepEntry> done);

    const QUuid &id() const { return m_step.id; }

private:
    friend class StepRecords;
    enum class Way { Forth, Back };
    OpenStep(StepRecords &records, RecordedStep step, Way way);
    Result<void> note();
    void removeNote();
    QByteArray lineOf(std::vector<StepEntry> done) const;

    StepRecords *m_records = nullptr;
    RecordedStep m_step = {{}, {}, {}, {}};
    Way m_way = Way::Forth;
    Location m_file;
    FileLock m_lock;
};

} // namespace brellin

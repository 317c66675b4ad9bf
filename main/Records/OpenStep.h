#pragma once

#include "Records/RecordedStep.h"
#include "System/FileLock.h"

namespace brellin {

class StepRecords;

/// A step under way: noted on the disk before it begins, with the lock held while its owner lives. One that nobody settles
/// was cut short; `StepRecords::settle` finds out how far it came.
class OpenStep {
public:
    /// Of nothing: nothing is recorded.
    OpenStep() = default;
    /// As if nothing had happened, where it was not settled.
    ~OpenStep();
    OpenStep(OpenStep &&other) noexcept;
    OpenStep &operator=(OpenStep &&) = delete;
    OpenStep(const OpenStep &) = delete;
    OpenStep &operator=(const OpenStep &) = delete;

    /// What the step did; of an undo, the entries that were taken back. Blocking.
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

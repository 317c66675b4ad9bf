#pragma once

#include "Disk/Trash.h"
#include "Records/OpenStep.h"
#include "System/Clock.h"
#include "System/StoredCondition.h"
#include "System/UserDefaults.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

namespace brellin {

/// What was read of the recorded steps.
struct KeptSteps {
    std::vector<RecordedStep> steps; ///< newest first
    StoredCondition condition;       ///< of their file

    bool operator==(const KeptSteps &) const = default;
};

/// The user's steps of the last 90 days, at most 10,000, in one file of lines ("verlauf.jsonl", mode 0600), shared by all
/// programs under a lock, with a note beside it for each step under way. What cannot be recorded holds up no step: it is
/// told once. Thread-safe; every call may wait for the disk.
class StepRecords {
public:
    static constexpr std::size_t mostSteps = 10'000;
    static constexpr std::chrono::days longestKept{90};
    /// The switch "Verlauf führen", on unless switched off.
    static const QString setting;

    /// The folder is made with the first step. All of it outlives the records.
    StepRecords(Location folder, const UserDefaults &defaults, const Clock &clock);

    /// A step is about to begin. An id lets several parts of one step add up.
    OpenStep begin(StepKind kind, std::vector<StepEntry> entries, const QUuid &id = QUuid::createUuid());
    /// Entries of an earlier step are about to be taken back.
    OpenStep takeBack(const QUuid &step, StepKind kind, std::vector<StepEntry> entries);

    /// Never waits for a step under way.
    KeptSteps read() const;
    /// Settles the steps that a crash cut short by what is found at their places.
    void settle(const Trash &trash);
    /// Forgets all steps but those under way.
    Result<void> clear();

    /// Hears, once and on any thread, that something could not be recorded.
    void onFailure(std::function<void(const QString &)> told);

    /// Whoever records a step that another part of the program is to name asks for it by its place, once.
    void remember(const Location &place, const QUuid &step);
    QUuid stepAt(const Location &place);

    const Location &folder() const { return m_folder; }
    Location file() const { return m_folder / "verlauf.jsonl"; }

private:
    friend class OpenStep;
    bool on() const;
    static Location newOpenFile(const Location &folder);
    Result<void> append(const QByteArray &line);
    Result<FileLock> lock() const;
    Result<void> tidy();
    void settleOne(const Location &file, const Trash &trash);
    void tell(const Failure &why);

    const Location m_folder;
    const UserDefaults &m_defaults;
    const Clock &m_clock;
    std::mutex m_mutex;
    std::function<void(const QString &)> m_told;
    std::optional<QString> m_untold; ///< failed before anybody listened
    bool m_failed = false;
    std::map<Location, QUuid> m_places;
    std::atomic<int> m_written{0};
};

} // namespace brellin

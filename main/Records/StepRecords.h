#pragma once

#include "Disk/Trash.h"
#include "Records/OpenStep.h"
#include "System/Clock.h"
#include "System/StoredCondition.h"
#include "System/SwitchSetting.h"
#include "System/UserDefaults.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

namespace brellin {

/// The recorded steps as read.
struct KeptSteps {
    std::vector<RecordedStep> steps; ///< newest first
    StoredCondition condition;       ///< of the file

    bool operator==(const KeptSteps &) const = default;
};

/// The user's steps of the last 90 days, at most 10,000, in one file of lines ("verlauf.jsonl", mode 0600), shared by
/// all processes under a lock, with a note beside it for each step in progress. A step that cannot be recorded is done
/// anyway; that is reported once. Thread-safe; every call may block on the disk.
class StepRecords {
public:
    static constexpr std::size_t mostSteps = 10'000;
    static constexpr std::chrono::days longestKept{90};
    /// The setting "Verlauf führen"; on by default.
    static const SwitchSetting setting;

    /// The folder is created with the first step. `defaults` and `clock` must outlive the records.
    StepRecords(Location folder, const UserDefaults &defaults, const Clock &clock);

    /// Call before a step. Parts of one step may share an id; they are combined.
    OpenStep begin(StepKind kind, std::vector<StepEntry> entries, const QUuid &id = QUuid::createUuid());
    /// Call before entries of an earlier step are undone. Recorded even when switched off if that step was: the list would
    /// offer it again.
    OpenStep takeBack(const QUuid &step, StepKind kind, std::vector<StepEntry> entries);

    /// Does not wait for steps in progress.
    KeptSteps read() const;
    /// Determines from disk what interrupted steps did, and records it.
    void settle(const Trash &trash);
    /// Removes all steps except those in progress, and damaged files that were put aside.
    Result<void> clear();

    /// Called once, on any thread, if something could not be recorded.
    void onFailure(std::function<void(const QString &)> told);

    /// The failure that onFailure() would be told, for a program that asks at its end; only once.
    std::optional<QString> takeFailure();

    /// Passes the id of a recorded step to another part of the program by location; stepAt() removes it.
    void remember(const Location &place, const QUuid &step);
    QUuid stepAt(const Location &place);

    const Location &folder() const { return m_folder; }
    Location file() const { return m_folder / "verlauf.jsonl"; }

private:
    friend class OpenStep;
    bool on() const;
    bool mayHold(const QUuid &step) const;
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
    std::optional<QString> m_untold; ///< failure before onFailure() was called
    bool m_failed = false;
    std::map<Location, QUuid> m_places;
    std::atomic<int> m_written{0};
    mutable std::atomic<bool> m_damaged{false}; ///< some lines could not be read
};

} // namespace brellin

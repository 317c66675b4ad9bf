#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "FileOperations/UserUndo.h"
#include "History/EntryTrail.h"
#include "Records/StepRecords.h"

#include <QThreadPool>

#include <functional>
#include <memory>

namespace brellin {

/// Ports of the history; all must outlive it.
struct HistoryServices {
    StepRecords &records;
    UserDefaults &defaults; ///< of the agent's runs
    UndoServices undo;
    UserUndo &session; ///< forgets what is taken back here
    /// Whether an entry may be changed. Called on workers; empty allows all.
    std::function<bool(const Location &entry)> mayChange = {};
};

/// A trail and where its entry was found.
struct FoundTrail {
    EntryTrail trail;
    std::optional<Location> place;
    bool inTrash = false;

    bool operator==(const FoundTrail &) const = default;
};

/// What the user and the agent did with files, as one list: shown, searched by name, and taken back step by step. Lives on
/// the main thread.
class HistoryList : public Model<HistoryList> {
public:
    static constexpr std::size_t mostTrails = 50;

    explicit HistoryList(HistoryServices services);
    ~HistoryList() override;

    Published<std::vector<HistoryStep>> steps; ///< newest first
    Published<std::optional<StoredCondition>> damage;
    Published<QString> searched; ///< the name that `trails` belong to; empty: nothing is searched
    Published<std::vector<FoundTrail>> trails;
    Published<int> changes{0}; ///< counts what was recorded or undone by this process: `steps` is outdated then
    Published<bool> loading{false};
    Published<bool> searching{false};
    Published<bool> takingBack{false};
    Published<QString> status;       ///< what came of taking back or clearing, for the page
    Published<QStringList> failures; ///< why it was not, or not all
    /// From where to where the last step taken back moved entries; `to` is empty if one went to the Trash.
    /// Empty while one is being taken back.
    Published<std::vector<UserAction::Entry>> undone;

    /// Reads both lists again.
    void reload();
    /// Follows the entries of this name; an empty one ends the search.
    void search(const QString &name);
    /// Takes a step of the user's back as far as it still stands. Does nothing while one is being taken back.
    void takeBack(const QUuid &step);
    /// Forgets the user's steps; the agent's runs stay.
    void clear();

    bool on() const;
    /// Switches the recording of steps.
    void setOn(bool on);

private:
    struct Read {
        std::vector<HistoryStep> steps;
        StoredCondition condition;
    };
    struct TakenBack {
        QUuid step;
        QString title;
        UndoneAction undone;
    };

    static TakenBack takeBackNow(const HistoryServices &services, const QUuid &step, JobControl &control);
    void tookBack(const TakenBack &outcome);
    void startSearch();

    const HistoryServices m_services;
    const std::shared_ptr<QThreadPool> m_pool;
    QString m_wanted;
    bool m_readAgain = false;
    Job<Read> m_reading;
    std::unique_ptr<Job<std::vector<FoundTrail>>> m_searching;
    Job<TakenBack> m_takingBack;
    Job<Result<void>> m_clearing;
};

} // namespace brellin

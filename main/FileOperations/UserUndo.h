#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "FileOperations/UndoAction.h"

#include <QThreadPool>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Undo and redo of the user's file actions in this session. Lives on the main thread.
class UserUndo : public Model<UserUndo> {
public:
    static constexpr std::size_t mostActions = 100;

    explicit UserUndo(UndoServices services);
    ~UserUndo() override;

    Published<std::vector<UserAction>> actions;  ///< newest first
    Published<std::optional<QString>> title;     ///< title of the undo command; none if there is nothing to undo
    Published<std::optional<QString>> redoTitle; ///< title of the redo command; none if there is nothing to redo
    Published<bool> running{false};
    Published<std::optional<double>> progress;
    Published<QString> status;                      ///< e.g. „Umbenennen von „a.txt“ rückgängig gemacht.“
    Published<std::optional<QString>> errorMessage; ///< what could not be undone, one line each
    Published<std::vector<Location>> restored;      ///< present locations of the entries last undone
    /// From where to where the last undo or redo moved entries; `to` is empty if one went to the Trash. Empty while running.
    Published<std::vector<UserAction::Entry>> undone;

    /// What became of the entries last recorded, undone or redone; published before everything else, then empty again.
    Published<std::vector<EntryMove>> moves;

    /// Adds an action, unless it has no entries, and clears redo.
    void record(UserAction action);
    /// Removes an action that was undone elsewhere as a whole.
    void forget(const UserAction &action);
    /// Publishes what undoing a step elsewhere moved, and keeps of its action only what is left.
    void undoneElsewhere(const QUuid &step, const UndoneAction &outcome);
    /// Undoes the newest action; ignored while undo or redo is running.
    void undo();
    /// Redoes the action undone last; ignored likewise.
    void redo();
    /// Whether the running operation is a redo.
    bool redoing() const { return m_way == Way::Forth; }
    void cancel() { m_job.cancel(); }
    void dismissError();

private:
    enum class Way { Back, Forth };
    void start(Way way, const UserAction &action);
    void finished(Way way, UserAction action, const UndoneAction &outcome);
    void publishActions(std::vector<UserAction> now);
    void publishMoves(std::vector<EntryMove> made);

    const UndoServices m_services;
    std::vector<UserAction> m_again; ///< for redo, newest first
    const std::shared_ptr<QThreadPool> m_pool;
    Way m_way = Way::Back; ///< direction of the running operation
    Job<UndoneAction> m_job;
};

} // namespace brellin

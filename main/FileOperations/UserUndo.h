#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "FileOperations/UndoAction.h"

#include <QThreadPool>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// What the user did with files in this session, the last first, the way back, and from there the way forth again. Lives on
/// the main thread.
class UserUndo : public Model<UserUndo> {
public:
    static constexpr std::size_t mostActions = 100;

    explicit UserUndo(UndoServices services);
    ~UserUndo() override;

    Published<std::vector<UserAction>> actions;  ///< newest first
    Published<std::optional<QString>> title;     ///< of the command; nothing where there is nothing to take back
    Published<std::optional<QString>> redoTitle; ///< the same for what was taken back last and can be done again
    Published<bool> running{false};
    Published<std::optional<double>> progress;
    Published<QString> status;                      ///< „Rückgängig gemacht.“
    Published<std::optional<QString>> errorMessage; ///< what could not be taken back, line by line
    Published<std::vector<Location>> restored;      ///< where the entries of the last undo are now

    /// Another action of the user's; one without entries is none. What was taken back before cannot be done again after it.
    void record(UserAction action);
    /// An action that was taken back elsewhere.
    void forget(const UserAction &action);
    /// Takes back the newest action. Does nothing while one is being taken back.
    void undo();
    /// Does again what was taken back last. As above.
    void redo();
    /// Whether what is running does something again.
    bool redoing() const { return m_way == Way::Forth; }
    void cancel() { m_job.cancel(); }
    void dismissError();

private:
    enum class Way { Back, Forth };
    void start(Way way, const UserAction &action);
    void finished(Way way, UserAction action, const UndoneAction &outcome);
    void publishActions(std::vector<UserAction> now);

    const UndoServices m_services;
    std::vector<UserAction> m_again; ///< what was taken back, the last first
    const std::shared_ptr<QThreadPool> m_pool;
    Way m_way = Way::Back; ///< of what is running
    Job<UndoneAction> m_job;
};

} // namespace brellin

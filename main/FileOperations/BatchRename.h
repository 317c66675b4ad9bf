#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/FileActions.h"
#include "FileOperations/BatchRenamePlan.h"
#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/RenameFacts.h"
#include "FileOperations/UserUndo.h"
#include "System/Decoders.h"

#include <QThreadPool>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Ports and shared models; all must outlive the batch.
struct BatchRenameServices {
    FileActions &files;
    Decoder &decoder;
    Location renameLogs;
    UserUndo &undo;
    /// Whether an entry may be renamed. Called on workers; empty allows all.
    std::function<bool(const Location &entry)> mayChange = {};
    StepRecords *records = nullptr; ///< where it is recorded; null: nowhere
};

/// Model of the batch rename sheet: fields, live preview, renaming and undo. Lives on the main thread. Destroying it
/// during a run undoes the batch.
class BatchRename : public Model<BatchRename> {
public:
    BatchRename(BatchRenameServices services, std::vector<Location> urls);
    ~BatchRename() override;

    Published<BatchRenameFields> fields;
    Published<BatchRenamePlan> preview;
    Published<bool> reading{false}; ///< names or dates are being read
    Published<bool> running{false};
    Published<std::optional<double>> progress;
    Published<std::vector<UserAction::Entry>> done; ///< entries renamed that `undo` can rename back
    Published<std::optional<QString>> error;
    Published<QString> status; ///< e.g. „3 umbenannt.“

    const std::vector<Location> &urls() const { return m_urls; }

    void setFields(const BatchRenameFields &changed);
    /// Whether `start` would rename anything: all facts are read, there is no conflict, at least one name changes, and
    /// nothing is done yet.
    bool canStart() const;
    void start();
    /// Renames all entries back.
    void undo();
    /// Cancels the run, which undoes the batch.
    void cancel() { m_renaming.cancel(); }

private:
    enum class Direction { Forth, Back };

    void read();
    void plan();
    void run(std::vector<RenamePair> pairs, Direction direction);
    void finished(const BatchRenameOutcome &outcome, Direction direction);

    const BatchRenameServices m_services;
    const std::vector<Location> m_urls;
    const std::shared_ptr<QThreadPool> m_pool;
    RenameFacts m_facts;
    bool m_factsKnown = false;
    QUuid m_step; ///< of what was renamed, in the history
    Job<RenameFacts> m_reading;
    Job<BatchRenameOutcome> m_renaming;
};

} // namespace brellin

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

/// What the sheet works with; all of it outlives it.
struct BatchRenameServices {
    FileActions &files;
    Decoder &decoder;
    Location renameLogs;
    UserUndo &undo;
    /// Whether an entry may be renamed; callable from every thread. Without it, every one may.
    std::function<bool(const Location &entry)> mayChange = {};
};

/// The sheet that renames several entries: its fields, the preview that follows them, and the renaming itself with its way
/// back. Lives on the main thread; when it goes while it renames, the batch is put back.
class BatchRename : public Model<BatchRename> {
public:
    BatchRename(BatchRenameServices services, std::vector<Location> urls);
    ~BatchRename() override;

    Published<BatchRenameFields> fields;
    Published<BatchRenamePlan> preview;
    Published<bool> reading{false}; ///< names or dates are being read
    Published<bool> running{false};
    Published<std::optional<double>> progress;
    Published<std::vector<UserAction::Entry>> done; ///< what was renamed and can be taken back
    Published<std::optional<QString>> error;
    Published<QString> status; ///< „3 umbenannt.“

    const std::vector<Location> &urls() const { return m_urls; }

    void setFields(const BatchRenameFields &changed);
    /// Whether `start` would do something: everything is read, no check fails, and a name changes.
    bool canStart() const;
    void start();
    /// Gives every entry its old name back.
    void undo();
    /// The batch is put back.
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
    Job<RenameFacts> m_reading;
    Job<BatchRenameOutcome> m_renaming;
};

} // namespace brellin

#pragma once

#include "Base/Job.h"
#include "Base/Published.h"
#include "Disk/FileActions.h"
#include "FileOperations/BatchRenamePlan.h"
#include "FileOperations/BatchRenameRun.h"
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
};

/// The sheet that renames several entries: its fields, the preview that follows them, and the renaming itself with its way
/// back. Lives on the main thread; whoever destroys it while it renames lets the batch be put back.
class BatchRename : public Model {
public:
    BatchRename(BatchRenameServices services, std::vector<Location> urls);
    ~BatchRename() override;

    Published<BatchRenameFields> fields;
    Published<BatchRenamePlan> preview;
    Published<bool> reading{true}; ///< names and dates are being read
    Published<bool> running{false};
    Published<std::optional<double>> progress;
    Published<std::vector<UserAction::Entry>> done; ///< what was renamed and can be taken back
    Published<std::optional<QString>> error;
    Published<QString> status; ///< „3 umbenannt.“

    const std::vector<Location> &urls() const { return m_urls; }

    void setFields(const BatchRenameFields &changed);
    /// Whether `start` would do something: names are known, no check fails, and a name changes.
    bool canStart() const;
    /// Looks at the folders once more, checks, and renames.
    void start();
    /// Gives every entry its old name back.
    void undo();
    void cancel();

private:
    struct Facts;
    struct Renamed;

    void read();
    void plan();
    std::vector<BatchRenameEntry> entries() const;
    void run(std::function<Renamed(JobControl &)> work, const QString &textOfSuccess);
    void finished(const Renamed &renamed, const QString &textOfSuccess);

    const BatchRenameServices m_services;
    const std::vector<Location> m_urls;
    const std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Facts> m_facts;
    std::unique_ptr<Job<std::shared_ptr<Facts>>> m_reading;
    std::unique_ptr<Job<std::shared_ptr<Renamed>>> m_running;
};

} // namespace brellin

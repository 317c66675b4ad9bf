#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Features/StorageTree.h"

#include <QThreadPool>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// How the space of a folder is used. Counts on a worker and shows interim results; does not enter other volumes, and
/// counts hard links to one file once. Lives on the main thread.
class StorageOverview : public Model<StorageOverview> {
public:
    StorageOverview();
    ~StorageOverview() override;

    Published<Location> top;                      ///< the folder that was counted
    Published<Location> shown;                    ///< the folder on display: `top` or below it
    Published<std::vector<StorageEntry>> entries; ///< largest first
    Published<std::int64_t> bytes{0};             ///< of the folder on display
    Published<std::int64_t> files{0};
    Published<bool> counting{false};
    Published<QString> status; ///< „Zähle … 12.345 Dateien“, space shared by hard links, unreadable folders
    Published<std::optional<QString>> errorMessage;

    /// Starts counting `folder`.
    void count(const Location &folder);
    /// Stops counting; keeps the interim result.
    void cancel();
    /// Shows a sub-folder of the one on display; ignored if it was not counted.
    void goDown(const Location &folder);
    void goUp();
    bool canGoUp() const { return shown.get() != top.get(); }
    /// Removes trashed entries from the result.
    void removed(const std::vector<Location> &gone);

private:
    struct Counted {
        std::optional<QString> error;
        bool cancelled = false;
    };
    void show();
    void finished(const Counted &counted);

    std::shared_ptr<StorageTree> m_tree;
    std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Job<Counted>> m_job;
};

} // namespace brellin

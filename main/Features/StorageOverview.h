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

/// Where the space of a folder goes. Counted in the background and shown while it is; other volumes are not entered, and what
/// several hard links share counts once. Lives on the main thread.
class StorageOverview : public Model<StorageOverview> {
public:
    StorageOverview();
    ~StorageOverview() override;

    Published<Location> top;                      ///< what was counted
    Published<Location> shown;                    ///< the folder whose entries are shown, at or below `top`
    Published<std::vector<StorageEntry>> entries; ///< the biggest first
    Published<std::int64_t> bytes{0};             ///< of the folder shown
    Published<std::int64_t> files{0};
    Published<bool> counting{false};
    Published<QString> status; ///< „Zähle … 12.345 Dateien“, what hard links share, what could not be read
    Published<std::optional<QString>> errorMessage;

    /// Counts `folder` from the start.
    void count(const Location &folder);
    /// Ends counting; what was counted stays.
    void cancel();
    /// Shows a folder in the one shown; what is no counted folder is passed over.
    void goDown(const Location &folder);
    void goUp();
    bool canGoUp() const { return shown.get() != top.get(); }
    /// These have gone to the Trash: they leave the tree.
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

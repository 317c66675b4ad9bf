#pragma once

#include "ContentView/FolderSearch.h"
#include "Disk/FileCall.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace brellin {

/// Runs one search at a time on a worker and reports matches while it runs. Lives on the main thread.
class SearchRun {
public:
    using Work = std::function<FolderSearchResult(const JobControl &)>;

    /// `found` gets the matches so far, `ended` the result. Both are called from the event loop, never after `drop` or
    /// another start.
    SearchRun(MountWorkers &workers, std::function<void(const FolderSearchResult &)> found,
              std::function<void(const FolderSearchResult &)> ended);

    void start(const Location &where, Work work);
    /// Reports `matches`, which the running work fills, every 100 ms from now on.
    void showMatches(std::shared_ptr<SearchMatches> matches);
    void drop();

private:
    void sample();

    MountWorkers &m_workers;
    std::function<void(const FolderSearchResult &)> m_found;
    std::function<void(const FolderSearchResult &)> m_ended;
    std::shared_ptr<SearchMatches> m_matches;
    std::optional<std::size_t> m_shown; ///< number of matches last reported
    QTimer m_sampling;
    FileCall<FolderSearchResult> m_call;
};

} // namespace brellin

#pragma once

#include "ContentView/FolderSearch.h"
#include "Disk/FileCall.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace brellin {

/// One search at a time on a worker, its matches shown while it is under way. Lives on the main thread.
class SearchRun {
public:
    using Work = std::function<FolderSearchResult(const JobControl &)>;

    /// `found` gets what there is so far, `ended` the result; both are called from the event loop, and neither after
    /// `drop` or another start.
    SearchRun(MountWorkers &workers, std::function<void(const FileItems &)> found,
              std::function<void(const FolderSearchResult &)> ended);

    void start(const Location &where, Work work);
    /// Looks at `matches`, which the work under way fills, ten times a second from now on.
    void showMatches(std::shared_ptr<SearchMatches> matches);
    void drop();

private:
    void sample();

    MountWorkers &m_workers;
    std::function<void(const FileItems &)> m_found;
    std::function<void(const FolderSearchResult &)> m_ended;
    std::shared_ptr<SearchMatches> m_matches;
    std::optional<std::size_t> m_shown; ///< so many of the matches
    QTimer m_sampling;
    FileCall<FolderSearchResult> m_call;
};

} // namespace brellin

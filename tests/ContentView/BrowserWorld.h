#pragma once

#include "ContentView/BrowserModel.h"
#include "Support/FakeClock.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "System/MemoryUserDefaults.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSemaphore>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace brellin::test {

/// Runs the event loop until the condition holds; false after ten seconds.
inline bool waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer time;
    time.start();
    while (!condition() && time.elapsed() < 10'000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return condition();
}

/// Volumes of which one folder is on a network mount.
class PartlyRemoteVolumes : public SystemVolumes {
public:
    explicit PartlyRemoteVolumes(Location remote) : m_remote(std::move(remote)) {}
    bool isLocal(const Location &location) const override { return !isAtOrBelow(location, m_remote); }

private:
    Location m_remote;
};

class FakeTagSearch : public TagSearch {
public:
    Result<TaggedEntries> find(const QString &, const Location &, const JobControl &, const Found &tell) const override
    {
        std::ranges::for_each(found, tell);
        mayEnd.acquire();
        mayEnd.release();
        return TaggedEntries{found, unreadable};
    }
    std::vector<Location> found;
    std::vector<Location> unreadable;
    mutable QSemaphore mayEnd{1}; ///< acquire to keep searches from ending
};

/// Settings on a full disk: every write fails.
class UnwritableDefaults : public MemoryUserDefaults {
public:
    Result<void> setValue(const QString &, const QVariant &) override { return failure(Failure::system(ENOSPC)); }
};

/// The services of a pane over a temporary tree with "home", "remote" (a network mount) and a Trash.
struct BrowserWorld {
    TempTree tree;
    MemoryUserDefaults defaults;
    PartlyRemoteVolumes volumes{tree.path("remote")};
    FaultPlan faults;
    FaultyFileActions files{faults, volumes};
    KnownFolders folders = knownFolders();
    /// Always wait for local folders, even on a busy machine.
    MountWorkers workers{volumes, std::chrono::seconds(10), std::chrono::seconds(10)};
    FakeClock clock;
    FolderSizes sizes{defaults, volumes, clock};
    FolderColors colors{defaults};
    FakeTagSearch tagSearch;

    BrowserServices services() { return {defaults, volumes, files, folders, workers, sizes, colors, tagSearch}; }
    Location home(std::string_view relative) const { return tree.path("home") / relative; }

private:
    KnownFolders knownFolders() const
    {
        KnownFolders known = KnownFolders::ofThisUser();
        known.home = tree.folder("home");
        known.trash = tree.path("home/Trash/files");
        return known;
    }
};

/// The names of the rows, separated by blanks.
inline std::string rowNames(const DisplayedItems &rows)
{
    std::string names;
    for (std::size_t row = 0; row < rows.size(); ++row)
        names += (row > 0 ? " " : "") + rows[row].nameBytes;
    return names;
}

} // namespace brellin::test

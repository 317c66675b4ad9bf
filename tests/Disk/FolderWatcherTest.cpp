#include "Disk/FolderWatcher.h"

#include "Support/FailingCalls.h"
#include "Support/NoThreads.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>

#include <sys/syscall.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Records calls from the watcher's thread and lets a test wait for them.
class Ear {
public:
    FolderWatcher::Heard heard()
    {
        return [this] {
            const std::scoped_lock lock(m_mutex);
            ++m_count;
            m_changed.notify_all();
        };
    }
    bool waitFor(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_count >= count; });
    }
    int count()
    {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

std::shared_ptr<FolderWatcher> watch(const Location &folder, Ear &ear,
                                     FolderWatcher::Means means = FolderWatcher::Means::Events)
{
    return FolderWatcher::watch(folder, ear.heard(), means).value();
}

/// Waits until a name is reported; returns all changes so far.
FolderChanges changesUntil(FolderWatcher &watcher, Ear &ear, const std::string &name)
{
    FolderChanges all;
    for (int call = 1; !all.names.contains(name); ++call) {
        if (!ear.waitFor(call))
            break;
        all.names.merge(watcher.take().names);
    }
    return all;
}

} // namespace

TEST(FolderWatcherTest, hearsOfEveryKindOfChangeOnceUntilItIsTaken)
{
    const TempTree tree;
    tree.lines({"alt=x", "weg=x", "unter/"});
    Ear ear;
    const auto watcher = watch(tree.root(), ear);
    tree.file("neu");
    tree.file("unter/tiefer"); // not a direct child
    tree.file("alt", "mehr");
    std::filesystem::remove(tree.path("weg"));
    std::filesystem::rename(tree.path("neu"), tree.path("umbenannt"));
    tree.file("zuletzt");
    ASSERT_TRUE(ear.waitFor(1));
    const FolderChanges changes = changesUntil(*watcher, ear, "zuletzt");
    for (const char *name : {"alt", "weg", "neu", "umbenannt", "zuletzt"})
        EXPECT_TRUE(changes.names.contains(name)) << name;
    EXPECT_FALSE(changes.names.contains("tiefer"));
}

TEST(FolderWatcherTest, servesTwoWatchersOfOneFolderAndGoesQuietly)
{
    const TempTree tree;
    Ear first;
    Ear second;
    auto one = watch(tree.root(), first);
    const auto other = watch(tree.root(), second);
    one.reset();
    tree.file("a");
    ASSERT_TRUE(second.waitFor(1));
    EXPECT_EQ(first.count(), 0);
}

TEST(FolderWatcherTest, saysThatTheFolderIsGone)
{
    const TempTree tree;
    for (const auto means : {FolderWatcher::Means::Events, FolderWatcher::Means::Looking}) {
        const Location folder = tree.folder("a");
        Ear ear;
        const auto watcher = watch(folder, ear, means);
        std::filesystem::remove(folder);
        ASSERT_TRUE(ear.waitFor(1));
        EXPECT_TRUE(watcher->take().gone);
    }
    Ear ear;
    EXPECT_FALSE(FolderWatcher::watch(tree.path("fehlt"), ear.heard()));
    EXPECT_FALSE(FolderWatcher::watch(tree.path("fehlt"), ear.heard(), FolderWatcher::Means::Looking));
    EXPECT_FALSE(FolderWatcher::watch(tree.file("datei"), ear.heard()));
}

TEST(FolderWatcherTest, looksWhereThereAreNoEvents)
{
    const TempTree tree;
    Ear ear;
    const auto watcher = watch(tree.root(), ear, FolderWatcher::Means::Looking);
    tree.file("neu");
    EXPECT_TRUE(ear.waitFor(1));
    EXPECT_FALSE(watcher->take().gone);
    tree.file("noch eins");
    EXPECT_TRUE(ear.waitFor(2));
}

TEST(FolderWatcherTest, goesWithoutWaitingForAFolderThatDoesNotAnswer)
{
    const TempTree tree;
    std::promise<void> gone;
    std::promise<void> looking;
    bool wentFirst = false;
    // The second poll, on the thread, blocks until the watcher is destroyed or has timed out.
    const auto hang = [&](int number) {
        if (number == 1) {
            looking.set_value();
            wentFirst = gone.get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready;
        }
        return 0;
    };
    const bool offered = runWithFailingCalls(SYS_newfstatat, hang, [&] {
        Ear ear;
        auto watcher = watch(tree.root(), ear, FolderWatcher::Means::Looking);
        looking.get_future().wait();
        watcher.reset();
        gone.set_value();
    });
    if (!offered)
        GTEST_SKIP() << "the system does not hand over calls here";
    EXPECT_TRUE(wentFirst);
}

TEST(FolderWatcherTest, failsWhereTheSystemGivesNoThread)
{
    const TempTree tree;
    Ear ear;
    {
        const NoThreads noThreads;
        EXPECT_FALSE(FolderWatcher::watch(tree.root(), ear.heard()));
    }
    const auto watcher = watch(tree.root(), ear);
    tree.file("neu");
    EXPECT_TRUE(ear.waitFor(1));
}

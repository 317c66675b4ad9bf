#include "Disk/CopiedEntries.h"

#include "Disk/CopyEntry.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"
#include "Disk/MetadataMark.h"
#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

using namespace brellin;
using test::TempTree;

namespace {

namespace fs = std::filesystem;

/// Whether change times are old enough to prove that nothing changed since.
enum class Times { Fresh, Settled };

/// A folder that is copied with a record and then removed.
class CopiedEntriesTest : public testing::TestWithParam<Times> {
protected:
    CopiedEntriesTest()
    {
        tree.lines({"quelle/a.txt=eins", "quelle/tief/b.txt=zwei", "quelle/tief/leer/", "quelle/verweis->../draußen",
                    "quelle/einzeln.txt=vier", "draußen/bleibt.txt=drei"});
        fs::create_hard_link(tree.path("quelle/a.txt"), tree.path("quelle/tief/a noch einmal.txt"));
        if (GetParam() == Times::Settled)
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
        EXPECT_TRUE(copyEntry(tree.path("quelle"), copy, options()));
    }

    CopyOptions options()
    {
        CopyOptions one;
        one.copied = &copied;
        return one;
    }
    std::vector<std::string> removeAndListKept()
    {
        const Result<std::vector<Location>> kept = removeCopied(tree.path("quelle"), copied, copy);
        EXPECT_TRUE(kept);
        std::vector<std::string> names;
        for (const Location &one : kept.value_or(std::vector<Location>()))
            names.push_back(one.lexically_relative(tree.root()).native());
        std::ranges::sort(names);
        return names;
    }

    /// Changes an entry and restores its modification time.
    void changeInSecret(const char *name, const std::function<void(const Location &)> &change) const
    {
        const auto time = fs::last_write_time(tree.path(name));
        change(tree.path(name));
        fs::last_write_time(tree.path(name), time);
    }
    /// Changes only the change time.
    void touchRights(const char *name) const
    {
        fs::permissions(tree.path(name), fs::status(tree.path(name)).permissions());
    }

    TempTree tree;
    const Location copy = tree.path("unter anderem Namen");
    CopiedEntries copied;
};

INSTANTIATE_TEST_SUITE_P(Times, CopiedEntriesTest, testing::Values(Times::Fresh, Times::Settled));

} // namespace

TEST_P(CopiedEntriesTest, removesTheWholeSourceWhenNobodyTouchedIt)
{
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>());
    EXPECT_FALSE(tree.has("quelle"));
    EXPECT_EQ(tree.content("draußen/bleibt.txt"), "drei");
    EXPECT_EQ(tree.content("unter anderem Namen/tief/b.txt"), "zwei");
}

TEST_P(CopiedEntriesTest, leavesAndNamesWhatIsNewOrChanged)
{
    tree.file("quelle/tief/leer/neu.txt", "kam dazu");
    tree.file("quelle/tief/b.txt", "länger als zuvor");
    // Another file with a copied name, of the same size and time.
    const auto time = fs::last_write_time(tree.path("quelle/a.txt"));
    tree.file("fremd", "ACHT");
    fs::last_write_time(tree.path("fremd"), time);
    fs::rename(tree.path("fremd"), tree.path("quelle/a.txt"));
    EXPECT_EQ(removeAndListKept(),
              (std::vector<std::string>{"quelle/a.txt", "quelle/tief/b.txt", "quelle/tief/leer/neu.txt"}));
    EXPECT_EQ(tree.content("quelle/tief/leer/neu.txt"), "kam dazu");
    EXPECT_EQ(tree.content("quelle/tief/b.txt"), "länger als zuvor");
    EXPECT_EQ(tree.content("quelle/a.txt"), "ACHT");
    EXPECT_FALSE(tree.has("quelle/verweis"));
    EXPECT_FALSE(tree.has("quelle/tief/a noch einmal.txt"));
}

TEST_P(CopiedEntriesTest, leavesAFolderThatTookTheSourcesPlace)
{
    fs::rename(tree.path("quelle"), tree.path("woanders"));
    tree.lines({"quelle/a.txt=eins"});
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>{"quelle"});
    EXPECT_EQ(tree.content("quelle/a.txt"), "eins");
    EXPECT_EQ(tree.content("woanders/tief/b.txt"), "zwei");
}

TEST_P(CopiedEntriesTest, leavesWhatWasChangedWithItsTimePutBack)
{
    changeInSecret("quelle/a.txt", [](const Location &file) { std::ofstream(file, std::ios::in) << "EINS"; });
    changeInSecret("quelle/tief", [](const Location &folder) { fs::permissions(folder, fs::perms::owner_all); });
    EXPECT_EQ(removeAndListKept(), (std::vector<std::string>{"quelle/a.txt", "quelle/tief"}));
    EXPECT_EQ(tree.content("quelle/a.txt"), "EINS");
    EXPECT_EQ(tree.content("quelle/tief/b.txt"), "zwei") << "a folder that stays, stays whole";
}

TEST_P(CopiedEntriesTest, leavesWhatGotAnotherTimeThoughItsContentIsTheSame)
{
    fs::last_write_time(tree.path("quelle/einzeln.txt"), fs::file_time_type::clock::now() - std::chrono::hours(5));
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>{"quelle/einzeln.txt"});
    EXPECT_EQ(tree.content("quelle/einzeln.txt"), "vier");
}

TEST_P(CopiedEntriesTest, leavesWhatGotTagsOrRightsMeanwhile)
{
    fs::permissions(tree.path("quelle/einzeln.txt"), fs::perms::owner_all);
    std::vector<std::string> kept{"quelle/einzeln.txt"};
    if (::setxattr(tree.path("quelle/tief/b.txt").c_str(), "user.xdg.tags", "Rot", 3, 0) == 0 &&
        ::setxattr(tree.path("quelle/tief/leer").c_str(), "user.xdg.tags", "Blau", 4, 0) == 0)
        kept.insert(kept.end(), {"quelle/tief/b.txt", "quelle/tief/leer"});
    EXPECT_EQ(removeAndListKept(), kept);
}

TEST_P(CopiedEntriesTest, isNotMisledByTimesThatMoveWithoutAChange)
{
    // The same permissions again, a temporary rename, and a link outside the source.
    touchRights("quelle/tief/b.txt");
    fs::rename(tree.path("quelle/einzeln.txt"), tree.path("quelle/kurz"));
    fs::rename(tree.path("quelle/kurz"), tree.path("quelle/einzeln.txt"));
    fs::create_hard_link(tree.path("quelle/a.txt"), tree.path("draußen/a.txt"));
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>());
    EXPECT_FALSE(tree.has("quelle"));
    EXPECT_EQ(tree.content("draußen/a.txt"), "eins");
}

TEST_P(CopiedEntriesTest, leavesWhatIsInDoubtAndNotInTheCopy)
{
    for (const char *const name : {"quelle/einzeln.txt", "quelle/tief/b.txt"})
        touchRights(name);
    tree.file("unter anderem Namen/tief/b.txt", "zwEI");
    fs::remove(copy / "einzeln.txt");
    fs::create_symlink(tree.path("quelle/einzeln.txt"), copy / "einzeln.txt");
    EXPECT_EQ(removeAndListKept(), (std::vector<std::string>{"quelle/einzeln.txt", "quelle/tief/b.txt"}));
}

TEST_P(CopiedEntriesTest, leavesWhatTheCopyNoLongerHolds)
{
    fs::remove(copy / "einzeln.txt");
    std::ofstream(copy / "tief/b.txt") << "z";
    fs::remove(copy / "tief/leer");
    EXPECT_EQ(removeAndListKept(),
              (std::vector<std::string>{"quelle/einzeln.txt", "quelle/tief/b.txt", "quelle/tief/leer"}));
    EXPECT_EQ(tree.content("quelle/tief/b.txt"), "zwei");
    EXPECT_FALSE(tree.has("quelle/a.txt"));
}

TEST_P(CopiedEntriesTest, looksWithoutRemoving)
{
    tree.file("quelle/tief/neu.txt", "kam dazu");
    const std::string before = tree.snapshot();
    const auto changed = changedSinceCopy(tree.path("quelle"), copied, copy);
    ASSERT_TRUE(changed);
    EXPECT_EQ(*changed, std::vector<Location>{tree.path("quelle/tief/neu.txt")});
    EXPECT_EQ(tree.snapshot(), before);
}

/// As on a volume that keeps neither inodes nor change times.
TEST_P(CopiedEntriesTest, comparesContentWhereTimesProveNothing)
{
    copied.begin(OwnEntries::pathMark(0, "a.txt"), CopiedEntries::Proof::None);
    const SourceStatus seen = SourceStatus::of(*statusOf({AT_FDCWD, tree.path("quelle/a.txt").c_str()}));
    const Descriptor file = *openForReading({AT_FDCWD, tree.path("quelle/a.txt").c_str()});
    copied.add(copied.top(), seen, MetadataMark::of(file.number(), seen.status));
    changeInSecret("quelle/a.txt", [](const Location &one) { std::ofstream(one, std::ios::in) << "EINS"; });
    const auto remove = [&] { return removeCopied(tree.path("quelle/a.txt"), copied, copy / "a.txt"); };
    EXPECT_EQ(remove().value_or(std::vector<Location>()), std::vector<Location>{tree.path("quelle/a.txt")});
    changeInSecret("quelle/a.txt", [&](const Location &one) {
        fs::remove(one);
        tree.file("quelle/a.txt", "eins"); // another inode
        fs::permissions(one, static_cast<fs::perms>(seen.status.st_mode & 07777));
        fs::last_write_time(one, fs::last_write_time(copy / "a.txt"));
    });
    EXPECT_EQ(remove().value_or(std::vector<Location>{"failed"}), std::vector<Location>());
    EXPECT_FALSE(tree.has("quelle/a.txt"));
}

TEST_P(CopiedEntriesTest, comparesContentWhereTheVolumeDoesNotSayWhatItIs)
{
    bool done = false;
    const auto act = [&] { done = copyEntry(tree.path("quelle"), copy / "noch", options()).has_value(); };
    if (!test::runWithFailingCalls(SYS_fstatfs, [](int) { return EIO; }, act))
        GTEST_SKIP() << "the system cannot make calls fail here";
    ASSERT_TRUE(done);
    const Location a = tree.path("quelle/a.txt");
    const auto *const known =
        copied.find(OwnEntries::pathMark(copied.top(), "a.txt"), *statusOf({AT_FDCWD, a.c_str()}));
    ASSERT_NE(known, nullptr);
    EXPECT_FALSE(copied.isProvenBy(*known, *statusOf({AT_FDCWD, a.c_str()})));
}

/// A file with three hard links is changed after the first was copied, which is then removed.
TEST(CopiedNamesTest, ofAFileThatChangedBetweenThemAreNotTheFirstCopy)
{
    const TempTree tree;
    tree.file("quelle/eins", "früher");
    for (const char *name : {"quelle/zwei", "quelle/drei"})
        fs::create_hard_link(tree.path("quelle/eins"), tree.path(name));
    const auto aMoment = [] { std::this_thread::sleep_for(std::chrono::milliseconds(40)); };
    aMoment();
    CopiedEntries copied;
    CopyOptions options;
    options.copied = &copied;
    options.interval = {};
    bool changed = false;
    options.progress = [&](const CopyProgress &progress) {
        if (progress.files != 1 || std::exchange(changed, true))
            return;
        std::ofstream(progress.current, std::ios::in) << "später";
        fs::remove(progress.current);
        aMoment();
    };
    ASSERT_TRUE(copyEntry(tree.path("quelle"), tree.path("kopie"), options));
    ASSERT_TRUE(changed);
    EXPECT_TRUE(removeCopied(tree.path("quelle"), copied, tree.path("kopie")));
    int newer = 0;
    for (const char *folder : {"quelle", "kopie"}) {
        for (const char *name : {"eins", "zwei", "drei"}) {
            const std::string place = std::string(folder) + "/" + name;
            newer += tree.has(place) && tree.content(place) == "später" ? 1 : 0;
        }
    }
    EXPECT_GE(newer, 2) << "both names that are left lead to what was written last";
}

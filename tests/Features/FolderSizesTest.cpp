#include "Features/FolderSizes.h"

#include "Support/FakeClock.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <atomic>

using namespace brellin;
using namespace brellin::test;
using State = FolderSize::State;

namespace {

/// Volumes on which folders named "netz" count as network mounts.
class SomeNetwork : public SystemVolumes {
public:
    bool isLocal(const Location &location) const override
    {
        ++asked;
        return location.filename() != "netz";
    }
    mutable std::atomic<int> asked = 0;
};

class FolderSizesTest : public testing::Test {
protected:
    std::optional<State> stateOf(const char *name) const
    {
        const auto size = sizes.size(tree.path(name));
        return size ? std::optional(size->state) : std::nullopt;
    }
    std::int64_t bytes(const char *name) const
    {
        const auto size = sizes.size(tree.path(name));
        return size ? size->bytes : -1;
    }
    std::vector<Location> paths(std::initializer_list<const char *> names) const
    {
        std::vector<Location> list;
        for (const char *name : names)
            list.push_back(tree.path(name));
        return list;
    }
    bool idle() const
    {
        return std::ranges::none_of(asked, [&](const Location &folder) { return sizes.pending(folder); });
    }
    void request(std::initializer_list<const char *> names)
    {
        asked = paths(names);
        sizes.request(&owner, asked);
    }
    void requestAndWait(std::initializer_list<const char *> names)
    {
        request(names);
        ASSERT_TRUE(waitUntil([&] { return idle(); }));
    }

    TempTree tree;
    MemoryUserDefaults defaults;
    SomeNetwork volumes;
    FakeClock clock;
    FolderSizes sizes{defaults, volumes, clock, 200};
    QObject owner;
    std::vector<Location> asked;
};

} // namespace

TEST(FolderCountTest, countsHardLinksOnceAndFollowsNoLink)
{
    const TempTree tree;
    tree.lines({"a/eins=12345", "a/tief/zwei=123", "a/.punkt=1", "a/verweis->../b", "b/gross=1234567890"});
    std::filesystem::create_hard_link(tree.path("a/eins"), tree.path("a/tief/nochmal"));
    const auto count = countFolder(tree.path("a"));
    ASSERT_TRUE(count);
    EXPECT_EQ(*count, (FolderCount{5 + 3 + 1 + 4, 4, 6, 0, true}));
    const auto link = countFolder(tree.path("a/verweis"));
    ASSERT_TRUE(link);
    EXPECT_EQ(link->bytes, 4) << "a link stands for itself";
    EXPECT_TRUE(countFolder(tree.path("fehlt")).error().is(std::errc::no_such_file_or_directory));
    const auto capped = countFolder(tree.path("a"), nullptr, 2);
    ASSERT_TRUE(capped);
    EXPECT_FALSE(capped->complete);
    JobControl control;
    control.cancel();
    EXPECT_TRUE(countFolder(tree.path("a"), &control).error().isCancelled());
}

TEST_F(FolderSizesTest, countsWhatIsShownAndTellsInOneGo)
{
    tree.lines({"a/x=1", "b/x=22", "c/x=333"});
    std::vector<Location> heard;
    sizes.observe(&owner, [&](const std::vector<Location> &changed) {
        heard.insert(heard.end(), changed.begin(), changed.end());
    });
    request({"b", "a", "fehlt"});
    EXPECT_TRUE(sizes.pending(tree.path("a")));
    EXPECT_FALSE(sizes.size(tree.path("a")));
    ASSERT_TRUE(waitUntil([&] { return heard.size() == 3; }));
    EXPECT_EQ(heard, paths({"b", "a", "fehlt"}))
        << "in the order of the wish; a folder that cannot be read is told, too";
    EXPECT_EQ(bytes("a"), 1);
    EXPECT_EQ(bytes("b"), 2);
    EXPECT_EQ(stateOf("b"), State::Current);
    EXPECT_EQ(bytes("c"), -1);
    EXPECT_FALSE(sizes.pending(tree.path("fehlt")));
}

TEST_F(FolderSizesTest, aNewWishReplacesTheOldAndADeadOwnerWantsNothing)
{
    tree.lines({"a/x=1", "b/x=22", "c/x=333", "d/x=4444"});
    request({"a", "b"});
    requestAndWait({"c"});
    EXPECT_EQ(bytes("c"), 3);
    EXPECT_EQ(bytes("b"), -1);
    request({"a"});
    {
        QObject mortal;
        sizes.request(&mortal, paths({"d"})); // queued until "a" has been counted
    }
    ASSERT_TRUE(waitUntil([&] { return idle(); }));
    EXPECT_EQ(bytes("d"), -1);
    EXPECT_EQ(bytes("a"), 1);
}

TEST_F(FolderSizesTest, isCountedAgainWhenTouchedOrOld)
{
    tree.lines({"a/tief/x=1", "b/x=22"});
    requestAndWait({"a", "b"});
    tree.file("a/tief/y", "1234");
    sizes.touched(tree.path("a/tief/y"));
    EXPECT_EQ(stateOf("a"), State::Stale);
    EXPECT_EQ(bytes("a"), 1) << "the old size is shown meanwhile";
    EXPECT_EQ(stateOf("b"), State::Current);
    ASSERT_TRUE(waitUntil([&] { return stateOf("a") == State::Current; })) << "the wish still stands";
    EXPECT_EQ(bytes("a"), 5);

    clock.time += std::chrono::minutes(5);
    EXPECT_EQ(stateOf("b"), State::Current);
    clock.time += std::chrono::seconds(1);
    EXPECT_EQ(stateOf("b"), State::Stale);
    tree.file("b/y", "333");
    requestAndWait({"b"});
    EXPECT_EQ(bytes("b"), 5);
}

TEST_F(FolderSizesTest, whatGrowsOldOnScreenIsCountedAgain)
{
    tree.lines({"a/x=1", "b/x=22"});
    std::vector<Location> heard;
    sizes.observe(&owner, [&](const auto &changed) { heard.insert(heard.end(), changed.begin(), changed.end()); });
    sizes.request(&owner, paths({"a", "b"}), 1);
    ASSERT_TRUE(waitUntil([&] { return heard.size() == 2; }));
    heard.clear();
    for (const char *name : {"a/y", "b/y"})
        tree.file(name, "333");
    sizes.age();
    clock.time += std::chrono::minutes(6);
    sizes.age();
    ASSERT_TRUE(waitUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, paths({"a"})) << "shown as outdated at once";
    ASSERT_TRUE(waitUntil([&] { return stateOf("a") == State::Current; }));
    EXPECT_EQ(bytes("a"), 4);
    EXPECT_EQ(stateOf("b"), State::Stale) << "not on screen";
}

TEST_F(FolderSizesTest, forgetsBelowAFolderOnly)
{
    tree.lines({"a/x=1", "a/unter/y=22", "ab/x=333"});
    requestAndWait({"a", "a/unter", "ab"});
    sizes.request(&owner, {});
    sizes.forget(tree.path("a"));
    EXPECT_EQ(bytes("a/unter"), -1);
    EXPECT_EQ(bytes("a"), 1 + 2);
    EXPECT_EQ(bytes("ab"), 3);
}

TEST_F(FolderSizesTest, networkFoldersOnlyWhereTheSettingSaysSo)
{
    tree.lines({"netz/x=1", "lokal/x=22"});
    requestAndWait({"netz", "lokal"});
    ASSERT_TRUE(waitUntil([&] { return bytes("lokal") == 2 && !sizes.pending(tree.path("netz")); }));
    EXPECT_EQ(bytes("netz"), -1);
    sizes.calculate(tree.path("netz"));
    ASSERT_TRUE(waitUntil([&] { return !sizes.pending(tree.path("netz")); }));
    EXPECT_EQ(bytes("netz"), -1);
    ASSERT_TRUE(defaults.setValue(QStringLiteral("folderSizesNetwork"), true));
    requestAndWait({"netz"});
    EXPECT_EQ(bytes("netz"), 1);
}

TEST_F(FolderSizesTest, stopsUnaskedCountingOfLargeFoldersAndGoesOnWhenAsked)
{
    for (int i = 0; i < 300; ++i)
        tree.file("gross/" + std::to_string(i), "1234567");
    requestAndWait({"gross"});
    EXPECT_EQ(stateOf("gross"), State::Capped);
    sizes.calculate(tree.path("gross"));
    ASSERT_TRUE(waitUntil([&] { return stateOf("gross") == State::Current; }));
    EXPECT_EQ(sizes.size(tree.path("gross"))->files, 300);
    // After the cancel the previous size stays; the second folder is queued behind the first and has not started.
    for (int i = 0; i < 300; ++i)
        tree.file("auch gross/" + std::to_string(i), "1234567");
    requestAndWait({"auch gross"});
    sizes.calculate(tree.path("gross"));
    sizes.calculate(tree.path("auch gross"));
    EXPECT_TRUE(sizes.calculating(tree.path("auch gross")));
    sizes.cancel(tree.path("auch gross"));
    EXPECT_FALSE(sizes.calculating(tree.path("auch gross")));
    sizes.cancel(tree.path("gross"));
    sizes.calculate(tree.path("gross")); // requested again
    ASSERT_TRUE(waitUntil([&] { return !sizes.calculating(tree.path("gross")); }));
    EXPECT_EQ(stateOf("gross"), State::Current);
    EXPECT_EQ(stateOf("auch gross"), State::Capped);
    // Stale, but an automatic count would only reach its limit again.
    clock.time += std::chrono::hours(1);
    request({"gross"});
    EXPECT_EQ(stateOf("gross"), State::Stale);
    EXPECT_FALSE(sizes.pending(tree.path("gross")));
}

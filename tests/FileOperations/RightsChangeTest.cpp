#include "FileOperations/RightsChange.h"

#include "Disk/FileActions.h"
#include "Disk/SystemTrash.h"
#include "Disk/Volumes.h"
#include "FileOperations/RecordedAction.h"
#include "Records/SettledByDisk.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"
#include "System/MemoryUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include <sys/stat.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A folder with a program, a text, a link out of it and a subfolder.
class RightsChangeTest : public testing::Test {
protected:
    RightsChangeTest()
    {
        tree.lines({"o/prog=x", "o/text=y", "o/unter/tief=z", "draussen=d"});
        std::filesystem::create_symlink(tree.path("draussen"), tree.path("o/link"));
        for (const auto &[name, mode] : modes)
            EXPECT_EQ(::chmod(tree.path(name).c_str(), mode), 0);
    }

    unsigned mode(const std::string &name) const
    {
        struct stat status{};
        EXPECT_EQ(::lstat(tree.path(name).c_str(), &status), 0) << name;
        return status.st_mode & 07777U;
    }
    std::map<std::string, mode_t> now() const
    {
        std::map<std::string, mode_t> found;
        for (const auto &[name, before] : modes)
            found[name] = mode(name);
        return found;
    }
    OperationOutcome change(const RightsWish &wish, StepRecords *kept = nullptr)
    {
        return changeRights({tree.path("o")}, wish, {}, kept, control);
    }
    UndoneAction undo(const UserAction &action) { return undoAction(action, {files, trash, {}}, control); }

    TempTree tree;
    const std::map<std::string, mode_t> modes{{"o", 0755},       {"o/prog", 04755},      {"o/text", 0640},
                                              {"o/unter", 0711}, {"o/unter/tief", 0600}, {"draussen", 0644}};
    JobControl control;
    DiskFileActions files;
    SystemVolumes volumes;
    SystemTrash trash{tree.path("trash"), volumes};
};

TEST_F(RightsChangeTest, givesTheExecuteBitToFoldersAndProgramsInside)
{
    const OperationOutcome outcome = change({.set = 0031, .clear = 0004, .inside = true});
    EXPECT_TRUE(outcome.failures.isEmpty());
    const std::map<std::string, mode_t> wanted{{"o", 0771},       {"o/prog", 04771},      {"o/text", 0660},
                                               {"o/unter", 0731}, {"o/unter/tief", 0620}, {"draussen", 0644}};
    EXPECT_EQ(now(), wanted);
    const RightsPlan plan = planRights({tree.path("o/text")}, {.set = 0111}, {}, control);
    ASSERT_EQ(plan.entries.size(), 1u);
    EXPECT_EQ(plan.entries.front().wanted.mode, 0771u) << "a file chosen itself becomes a program";
}

TEST_F(RightsChangeTest, restoresEachOwnRightsByIdentityAndRepeatsThem)
{
    const OperationOutcome outcome = change({.set = 0, .clear = 0077, .inside = true});
    ASSERT_EQ(outcome.action.entries.size(), 4u) << "what stays the same is left out";
    EXPECT_EQ(outcome.action.entries.back().to, tree.path("o")) << "after its content, which it gives access to";
    const std::map<std::string, mode_t> changed = now();
    const UndoneAction undone = undo(outcome.action);
    EXPECT_TRUE(undone.failures.isEmpty());
    EXPECT_EQ(now(), modes) << "the set-id bit as well";
    EXPECT_TRUE(undone.moves.empty());
    ASSERT_TRUE(undone.again);
    EXPECT_EQ(undone.again->entries.back().to, tree.path("o")) << "redo goes forth: its content first again";
    const UndoneAction again = undo(*undone.again);
    EXPECT_EQ(now(), changed);

    std::filesystem::remove(tree.path("o/text"));
    tree.file("o/text", "anderes");
    ASSERT_EQ(::chmod(tree.path("o/prog").c_str(), 0500), 0);
    ASSERT_EQ(::chmod(tree.path("o/text").c_str(), 0600), 0);
    const UndoneAction rest = undo(*again.again);
    EXPECT_EQ(rest.failures.size(), 2);
    EXPECT_EQ(mode("o/text"), 0600u) << "another file by now";
    EXPECT_EQ(mode("o/prog"), 0500u) << "changed by somebody else since";
    EXPECT_EQ(mode("o/unter"), 0711u);
}

TEST_F(RightsChangeTest, tellsWhatWouldBeLost)
{
    std::filesystem::create_hard_link(tree.path("o/text"), tree.path("o/zweiter"));
    const RightsWish wish{.set = 0020, .owner = 12345, .inside = true};
    const auto mayChange = [this](const Location &entry) { return entry != tree.path("o/unter"); };
    const RightsPlan plan = planRights({tree.path("o"), tree.path("fehlt")}, wish, mayChange, control);
    EXPECT_EQ(plan.setIds, 1);
    EXPECT_EQ(plan.severalNames, 2);
    EXPECT_EQ(plan.links, 1);
    EXPECT_EQ(plan.system, 1);
    EXPECT_EQ(plan.failures.size(), 1);
    EXPECT_EQ(rightsNotes(plan).size(), 4);
    EXPECT_TRUE(std::ranges::none_of(plan.entries, [this](const RightsPlan::Entry &one) {
        return isAtOrBelow(one.entry, tree.path("o/unter"));
    })) << "nor what lies in it";
    const OperationOutcome outcome = changeRights({tree.path("o/prog")}, wish, {}, nullptr, control);
    EXPECT_EQ(mode("o/prog"), 0775u) << "no program runs as an owner it was not made for";
    (void)undo(outcome.action);
    EXPECT_EQ(mode("o/prog"), 04755u);
    struct stat status{};
    ASSERT_EQ(::stat(tree.path("o/prog").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, ::getuid());
}

TEST_F(RightsChangeTest, isRecordedAndSettledAfterAnInterruption)
{
    const MemoryUserDefaults defaults;
    const FakeClock clock;
    StepRecords records(tree.path("verlauf"), defaults, clock);
    const OperationOutcome outcome = change({.set = 0020, .inside = true}, &records);
    EXPECT_FALSE(outcome.action.step.isNull());
    const std::vector<RecordedStep> kept = records.read().steps;
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(settledByDisk(kept.front(), trash).size(), 5u) << "as of an interrupted one that had been done";
    EXPECT_TRUE(takenBackByDisk(kept.front()).empty());
    const UndoneAction undone = undoRecorded(actionOf(kept.front()), {files, trash, {}, {}, &records}, control);
    EXPECT_TRUE(undone.failures.isEmpty());
    EXPECT_EQ(now(), modes);
    EXPECT_TRUE(records.read().steps.front().takenBack);
    EXPECT_TRUE(settledByDisk(kept.front(), trash).empty());
    EXPECT_EQ(takenBackByDisk(kept.front()).size(), 5u);
}

} // namespace

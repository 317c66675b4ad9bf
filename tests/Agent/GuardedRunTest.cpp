#include "Agent/AgentJson.h"
#include "Runs/AgentError.h"
#include "Runs/Execution.h"
#include "Runs/UndoRun.h"
#include "Support/AgentWorld.h"
#include "System/StoredList.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;
using Kind = AgentProposal::Kind;

namespace {

/// Runs whose entries have changed since they were planned.
class GuardedRunTest : public testing::Test {
protected:
    AgentProposal proposal(Kind kind, std::string_view source, std::optional<std::string_view> destination = {}) const
    {
        AgentProposal one;
        one.kind = kind;
        one.source = world.home(source);
        if (destination)
            one.destination = world.home(*destination);
        one.seen = FileState::of(readAttributes(one.source).value());
        return one;
    }
    void protect(std::string_view root, const QString &entry)
    {
        FolderProfile profile;
        profile.rootPath = textOf(world.home(root));
        profile.name = u"Werk"_qs;
        profile.protectedEntries = {{.path = entry, .reason = {}}};
        ASSERT_TRUE(storeList(world.defaults(), u"agentProfiles"_qs, std::vector{profile}));
    }
    Result<ExecutionOutcome> execute(const std::vector<AgentProposal> &proposals)
    {
        JobControl control;
        return Execution(world.services()).execute(proposals, control);
    }

    AgentWorld world;
};

} // namespace

TEST_F(GuardedRunTest, leavesWhatWasProtectedSinceItWasPlanned)
{
    world.tree().lines({"home/Werk/fest/a=1", "home/Werk/fest/b=2", "home/Werk/fest/c=3", "home/Werk/fest/d=4",
                        "home/Werk/fest/e=5", "home/Werk/frei=6", "home/Werk/fest/Paket.app/x=7", "home/DL->Werk/fest",
                        "home/Ziel/"});
    std::vector<AgentProposal> all;
    for (const char *const name : {"a", "b", "c"}) // the second and third use the fast path between held folders
        all.push_back(proposal(Kind::Move, std::string("DL/") + name, std::string("Ziel/") + name));
    all.push_back(proposal(Kind::Trash, "DL/d"));
    all.push_back(proposal(Kind::Rename, "Werk/fest/e", "Werk/fest/E"));
    all.push_back(proposal(Kind::Trash, "Werk/fest"));
    all.push_back(proposal(Kind::Move, "Werk/fest/Paket.app", "Ziel/Paket.app"));
    all.push_back(proposal(Kind::Move, "Werk/frei", "Ziel/frei"));
    protect("Werk", u"fest"_qs);
    const Result<ExecutionOutcome> outcome = execute(all);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->done, std::vector{all.back().id});
    ASSERT_EQ(outcome->failures.size(), all.size() - 1);
    for (const FailedProposal &failed : outcome->failures)
        EXPECT_EQ(failed.why.message, u"Im Projekt „Werk“ geschützt („fest“) und bleibt, wie es ist."_qs);
    // A profile does not prevent undo.
    protect("Ziel", u"frei"_qs);
    JobControl control;
    ASSERT_TRUE(UndoRun(world.services()).undo(outcome->run->id, control));
    EXPECT_EQ(world.tree().content("home/Werk/frei"), "6");
}

TEST_F(GuardedRunTest, heedsAProfileThatIsSavedWhileItWorks)
{
    world.tree().folder("home/Ziel");
    std::vector<AgentProposal> all;
    for (int n = 0; n < 5; ++n) {
        const std::string name = "f" + std::to_string(n);
        world.tree().file("home/Werk/fest/" + name, name);
        all.push_back(proposal(Kind::Move, "Werk/fest/" + name, "Ziel/" + name));
    }
    bool saved = false;
    world.files().beforeHeldRename = [&](const Location &) {
        if (!std::exchange(saved, true))
            protect("Werk", u"fest"_qs);
    };
    const Result<ExecutionOutcome> outcome = execute(all);
    ASSERT_TRUE(outcome && saved);
    // Saved during the second step, the profile applies to the third.
    EXPECT_EQ(outcome->done, (std::vector{all[0].id, all[1].id}));
    EXPECT_EQ(outcome->failures.size(), 3U);
    EXPECT_TRUE(world.tree().has("home/Werk/fest/f2"));
}

TEST_F(GuardedRunTest, leavesWhatHasBecomeAProjectUnlessItWasReviewed)
{
    world.tree().lines({"home/Downloads/a=1", "home/Downloads/b=2", "home/Downloads/c=3", "home/Ziel/"});
    std::vector<AgentProposal> all;
    for (const char *const name : {"a", "b", "c"})
        all.push_back(proposal(Kind::Move, std::string("Downloads/") + name, std::string("Ziel/") + name));
    all.back().needsReview = true;
    world.tree().file("home/Downloads/Cargo.toml");
    const Result<ExecutionOutcome> outcome = execute(all);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->done, std::vector{all.back().id});
    EXPECT_EQ(outcome->failureTexts().value(0),
              u"a: Gehört zum Software-Projekt „Downloads“ und bleibt, bis es geprüft ist."_qs);
    protect("Downloads", u"b"_qs);
    EXPECT_EQ(execute(all)->done, std::vector{all.front().id});
}

TEST_F(GuardedRunTest, neverTrashesWhatOthersHaveGoneFor)
{
    world.tree().lines({"home/Downloads/alt.pdf=gleich", "home/Downloads/neu.pdf=gleich", "home/DL->Downloads"});
    AgentProposal duplicate = proposal(Kind::Trash, "Downloads/neu.pdf");
    duplicate.keptCopy = world.home("Downloads/alt.pdf");
    const AgentProposal other = proposal(Kind::Trash, "DL/alt.pdf");
    const Result<ExecutionOutcome> outcome = execute({duplicate, other});
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failureTexts(), QStringList{u"alt.pdf: "_qs + AgentError::keptForOthers().message});
    EXPECT_EQ(world.tree().content("home/Downloads/alt.pdf"), "gleich");
    EXPECT_EQ(execute({other})->done, std::vector{other.id}); // in a later run it is the user's decision
}

TEST_F(GuardedRunTest, doesNothingWhileTheProfilesCannotBeRead)
{
    world.tree().file("home/a", "1");
    const AgentProposal one = proposal(Kind::Trash, "a");
    const auto damage = [](const std::optional<QByteArray> &) {
        return std::optional(UserDefaults::Change{R"([{"rootPath":"/home)", false});
    };
    ASSERT_TRUE(world.defaults().update(u"agentProfiles"_qs, damage));
    const Result<ExecutionOutcome> outcome = execute({one});
    ASSERT_FALSE(outcome);
    EXPECT_TRUE(world.tree().has("home/a"));
    EXPECT_FALSE(world.hasJournals());
}

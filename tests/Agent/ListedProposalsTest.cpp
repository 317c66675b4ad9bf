#include "Agent/ListedProposals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace brellin;
using Kind = AgentProposal::Kind;
using Tick = ListedProposals::Tick;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

AgentProposal moving(const std::string &name, bool needsReview = false)
{
    AgentProposal one;
    one.id = QUuid::createUuid();
    one.kind = Kind::Move;
    one.source = "/h/" + name;
    one.destination = "/h/Ziel/" + name;
    one.needsReview = needsReview;
    one.preselected = !needsReview;
    return one;
}

/// The names of the ticked proposals, in the order of the list.
std::vector<std::string> ticked(const ListedProposals &list)
{
    std::vector<std::string> names;
    for (const AgentProposal &one : list.proposals.get()) {
        if (list.chosen.get().contains(one.id))
            names.push_back(one.source.filename());
    }
    return names;
}

/// Whether ticks and groups speak of listed proposals only, and of all of them.
bool isConsistent(const ListedProposals &list)
{
    return list.groups.get() == groupsOf(list.proposals.get(), list.chosen.get()) &&
           ticked(list).size() == list.chosen.get().size();
}

} // namespace

TEST(ListedProposalsTest, keepsTheUsersTicksAcrossScansButNotForWhatNeedsReviewNow)
{
    ListedProposals list;
    list.show({moving("a"), moving("b"), moving("c"), moving("d", true)});
    EXPECT_THAT(ticked(list), ElementsAre("a", "b", "c"));
    list.setChosen(list.proposals.get()[0].id, Tick::Off);
    list.setChosen(list.proposals.get()[3].id, Tick::On);
    list.noteFailures({{list.proposals.get()[1].id, QStringLiteral("belegt")}});
    // The next scan finds the same again, under new ids.
    list.show({moving("a"), moving("b"), moving("c", true), moving("d", true), moving("e")});
    EXPECT_THAT(ticked(list), ElementsAre("b", "d", "e"));
    EXPECT_THAT(list.failures.get(), IsEmpty());
    EXPECT_TRUE(isConsistent(list));
}

TEST(ListedProposalsTest, losesTheTicksOfWhatLeavesTheList)
{
    ListedProposals list;
    list.show({moving("a"), moving("b"), moving("c")});
    const std::vector<AgentProposal> before = list.proposals.get();
    list.remove({before[0].id});
    EXPECT_THAT(ticked(list), ElementsAre("b", "c"));
    EXPECT_TRUE(isConsistent(list));
    AgentProposal changed = before[2];
    changed.keptCopy = "/h/anderswo";
    list.follow({{before[1].id, std::nullopt}, {before[2].id, changed}});
    EXPECT_THAT(list.proposals.get(), ElementsAre(changed));
    EXPECT_THAT(ticked(list), ElementsAre("c"));
    EXPECT_TRUE(isConsistent(list));
    EXPECT_FALSE(list.keepInstead(changed.id)) << "it is no duplicate";
    EXPECT_TRUE(isConsistent(list));
}

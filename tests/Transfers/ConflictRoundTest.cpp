#include "Transfers/ConflictRound.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

using Placing = TransferDecision::Placing;

enum class Existing { Ordinary, NotReplaceable, WithoutTrash };

ExaminedSource taken(const char *name, Existing existing)
{
    TakenPlace place;
    if (existing == Existing::NotReplaceable)
        place.stays = WhyItStays::HoldsSource;
    place.trashable = existing != Existing::WithoutTrash;
    return {Location("/von") / name, Location("/nach") / name, false, place};
}

/// The name asked about, with " für immer" for the question about permanent deletion.
std::string asks(const ConflictRound &round)
{
    const auto about = round.question();
    if (!about)
        return {};
    if (const auto *const forGood = std::get_if<NoTrashQuestion>(&*about))
        return forGood->name.toStdString() + " für immer";
    return std::get<ConflictQuestion>(*about).name.toStdString();
}

std::string decided(const ConflictRound &round)
{
    std::string text;
    for (const TransferDecision &one : round.decisions())
        text += one.src.filename().native() + (one.placing == Placing::Replace ? "! " : "+ ");
    return text;
}

const TransferAnswer replace = ConflictAnswer{ConflictChoice::replace, false};
const TransferAnswer replaceAll = ConflictAnswer{ConflictChoice::replace, true};
const TransferAnswer keepBoth = ConflictAnswer{ConflictChoice::keepBoth, false};
const TransferAnswer skip = ConflictAnswer{ConflictChoice::skip, false};
const TransferAnswer yes = Confirmation::Yes;
const TransferAnswer no = Confirmation::No;

} // namespace

TEST(ConflictRoundTest, replacesNothingThatIsNotReplaceableWhateverTheAnswer)
{
    ConflictRound round({taken("a", Existing::NotReplaceable), taken("b", Existing::Ordinary)});
    for (const TransferAnswer &answer : {replace, replaceAll}) {
        round.answer(answer);
        EXPECT_EQ(asks(round), "a");
        EXPECT_EQ(decided(round), "");
    }
    round.answer(keepBoth);
    EXPECT_EQ(asks(round), "b") << "an answer that was dropped holds for no other either";
}

TEST(ConflictRoundTest, forAllStopsAtWhatIsUnlikeTheOthers)
{
    ConflictRound round({taken("a", Existing::Ordinary), taken("b", Existing::NotReplaceable),
                         taken("c", Existing::WithoutTrash), taken("d", Existing::WithoutTrash),
                         taken("e", Existing::NotReplaceable), taken("f", Existing::Ordinary)});
    round.answer(replaceAll);
    EXPECT_EQ(asks(round), "b");
    round.answer(keepBoth);
    EXPECT_EQ(asks(round), "c für immer");
    round.answer(yes);
    EXPECT_EQ(asks(round), "d für immer");
    round.answer(no);
    EXPECT_EQ(asks(round), "e");
    round.answer(skip);
    EXPECT_EQ(asks(round), "");
    EXPECT_EQ(decided(round), "a! b+ c! f! ");
}

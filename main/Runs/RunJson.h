#pragma once

#include "Base/Json.h"
#include "Runs/JournalRun.h"

/// The stored form of proposals and runs. The keys must not change: earlier and later versions read them.
namespace brellin {

template <>
struct JsonWords<AgentProposal::Kind> {
    static constexpr std::array words{
        std::pair{AgentProposal::Kind::Move, u"move"}, std::pair{AgentProposal::Kind::Copy, u"copy"},
        std::pair{AgentProposal::Kind::Rename, u"rename"}, std::pair{AgentProposal::Kind::Trash, u"trash"}};
};

template <>
struct JsonTable<AgentProposal> {
    static constexpr std::tuple fields{field("id", &AgentProposal::id),
                                       field("kind", &AgentProposal::kind),
                                       field("source", &AgentProposal::source),
                                       field("destination", &AgentProposal::destination),
                                       field("reason", &AgentProposal::reason),
                                       field("automatic", &AgentProposal::automatic),
                                       field("preselected", &AgentProposal::preselected),
                                       field("isFolder", &AgentProposal::isFolder),
                                       field("needsReview", &AgentProposal::needsReview)};
};

template <>
struct JsonTable<JournalStep> {
    static constexpr std::tuple fields{field("kind", &JournalStep::kind), field("from", &JournalStep::from),
                                       field("to", &JournalStep::to),
                                       field("trashedOriginal", &JournalStep::trashedOriginal)};
};

template <>
struct JsonTable<JournalRun> {
    static constexpr std::tuple fields{field("id", &JournalRun::id), field("date", &JournalRun::date),
                                       field("steps", &JournalRun::steps), field("undone", &JournalRun::undone)};
};

} // namespace brellin

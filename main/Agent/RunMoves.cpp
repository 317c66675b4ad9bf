#include "Agent/RunMoves.h"

#include "Disk/FileAttributes.h"

#include <algorithm>
#include <iterator>

namespace brellin {

std::vector<EntryMove> movesOf(const JournalRun &run)
{
    std::vector<EntryMove> moves;
    for (const JournalStep &step : run.steps) {
        if (step.kind != AgentProposal::Kind::Copy)
            moves.push_back({step.from, step.to.value_or(Location())});
    }
    return moves;
}

UndoWitness::UndoWitness(const JournalRun &run)
{
    std::ranges::copy_if(movesOf(run), std::back_inserter(m_away),
                         [](const EntryMove &move) { return !move.to.empty() && entryExists(move.to); });
}

std::vector<EntryMove> UndoWitness::moves() const
{
    std::vector<EntryMove> back;
    for (const EntryMove &move : m_away) {
        if (!entryExists(move.to) && entryExists(move.from))
            back.push_back({move.to, move.from});
    }
    return back;
}

} // namespace brellin

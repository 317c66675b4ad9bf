#pragma once

#include "Features/EntryMove.h"
#include "Runs/JournalRun.h"

#include <vector>

namespace brellin {

/// What became of the entries of a run, without copies.
std::vector<EntryMove> movesOf(const JournalRun &run);

/// Finds out which entries of a run an undo puts back. Blocking.
class UndoWitness {
public:
    /// Call before the undo.
    explicit UndoWitness(const JournalRun &run);
    /// Call after it.
    std::vector<EntryMove> moves() const;

private:
    std::vector<EntryMove> m_away; ///< moves of the run whose entries are where it left them
};

} // namespace brellin

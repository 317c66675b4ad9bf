#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QStringList>

namespace brellin {

/// What became of stored data. Only the first two may be taken for what the user wanted.
enum class StoredState {
    Absent,
    Whole,
    Partly,    ///< some records did not decode
    Damaged,   ///< does not decode
    Unreadable ///< there, but not readable, or too large
};

/// How a stored list fares.
struct StoredCondition {
    QString list; ///< its key
    Location file;
    StoredState state = StoredState::Absent;
    QStringList lost;         ///< what cannot be read, and why: "Feld „[3].path“: …"
    bool hasLastGood = false; ///< there is a last good version to go back to

    bool operator==(const StoredCondition &) const = default;
    bool isWhole() const { return state == StoredState::Absent || state == StoredState::Whole; }
    /// "„agentRules.json“ ist beschädigt: …"
    QString text() const;
    /// The same for whoever cannot go on (`errc::illegal_byte_sequence`).
    Failure failure() const;
};

} // namespace brellin

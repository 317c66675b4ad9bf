#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QStringList>

namespace brellin {

/// The condition of stored data. Only the first two states may be taken as the user's intent.
enum class StoredState {
    Absent,
    Whole,
    Partly,    ///< some records could not be decoded
    Damaged,   ///< cannot be decoded at all
    Unreadable ///< exists, but cannot be read or is too large
};

/// The condition of a stored list.
struct StoredCondition {
    QString list; ///< its settings key
    Location file;
    StoredState state = StoredState::Absent;
    QStringList lost;         ///< what could not be read, and why: "Feld „[3].path“: …"
    bool hasLastGood = false; ///< there is a last good version to restore

    bool operator==(const StoredCondition &) const = default;
    bool isWhole() const { return state == StoredState::Absent || state == StoredState::Whole; }
    /// "„agentRules.json“ ist beschädigt: …"
    QString text() const;
    /// The same as a failure (`errc::illegal_byte_sequence`).
    Failure failure() const;
};

} // namespace brellin

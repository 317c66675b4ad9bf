#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <cstddef>
#include <vector>

namespace brellin {

/// A removed rule and its position, for undoing the removal.
struct RemovedRule {
    CleanupRule rule;
    std::size_t place = 0;

    bool operator==(const RemovedRule &) const = default;
};

/// Operations on the user's list of rules, which is ordered by precedence. Moving an unknown rule does nothing, and
/// neither does restoring one that is in the list.
std::vector<CleanupRule> withRule(std::vector<CleanupRule> rules, const CleanupRule &rule);
std::vector<CleanupRule> withRuleMoved(std::vector<CleanupRule> rules, const QUuid &rule, std::size_t place);
std::vector<CleanupRule> withRuleRestored(std::vector<CleanupRule> rules, const RemovedRule &removed);

/// A copy of a rule ("Kopie von …") with new ids, switched off and not automatic.
CleanupRule copyOf(const CleanupRule &rule);

/// A new rule for the folder `source`, for the editor.
CleanupRule newRule(const Location &source);

/// One-line summary of a rule: "→ In den Papierkorb", "→ Umbenennen in „{Datum} {Name}“", "→ ~/Bilder/{Jahr} (mit
/// Unterordnern)".
QString ruleSummary(const CleanupRule &rule, const Location &home);

} // namespace brellin

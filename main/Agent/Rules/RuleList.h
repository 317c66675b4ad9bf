#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Location.h"

#include <QString>
#include <QUuid>

#include <cstddef>
#include <vector>

namespace brellin {

/// A rule that was taken out of the list, and what puts it back.
struct RemovedRule {
    CleanupRule rule;
    std::size_t place = 0;

    bool operator==(const RemovedRule &) const = default;
};

/// Changes of the user's list of rules; its order is the one in which rules are tried. A rule that is not in the list changes
/// nothing.
std::vector<CleanupRule> withRule(std::vector<CleanupRule> rules, const CleanupRule &rule);
std::vector<CleanupRule> withRuleMoved(std::vector<CleanupRule> rules, const QUuid &rule, std::size_t place);
std::vector<CleanupRule> withRuleRestored(std::vector<CleanupRule> rules, const RemovedRule &removed);

/// A rule like this one under a name of its own ("Kopie von …"), switched off and not automatic, with ids of its own.
CleanupRule copyOf(const CleanupRule &rule);

/// A new rule for the editor; it looks into `source`.
CleanupRule newRule(const Location &source);

/// What a rule does, for its row: "→ In den Papierkorb", "→ Umbenennen in „{Datum} {Name}“", "→ ~/Bilder/{Jahr} (mit
/// Unterordnern)".
QString ruleSummary(const CleanupRule &rule, const Location &home);

} // namespace brellin

#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Places/KnownFolders.h"

#include <vector>

namespace brellin {

/// Version of the example set; older stored rules are upgraded to it.
inline constexpr int rulesVersion = 3;

/// The ten rules of a new user, in the order in which they are tried.
std::vector<CleanupRule> exampleRules(const KnownFolders &folders);

/// Appends the missing example rules in their original order. Recognises examples by name (the one for the language
/// model by either of its two names). Existing rules keep their order and content.
std::vector<CleanupRule> withMissingExampleRules(std::vector<CleanupRule> rules, const KnownFolders &folders);

/// Upgrades stored rules to the current set: appends missing examples, and renames "Dokumente aus Downloads mit KI
/// einsortieren" to "Dokumente mit KI einsortieren".
std::vector<CleanupRule> upgradedRules(std::vector<CleanupRule> rules, const KnownFolders &folders);

} // namespace brellin

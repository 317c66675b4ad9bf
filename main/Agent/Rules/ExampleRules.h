#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Places/KnownFolders.h"

#include <vector>

namespace brellin {

/// The version of the set; older stored rules are brought up to it.
inline constexpr int rulesVersion = 3;

/// The ten rules a new user starts with, in the order in which they are tried.
std::vector<CleanupRule> exampleRules(const KnownFolders &folders);

/// The rules with the example rules they lack appended in the examples' order; an example is recognised by its name (the
/// one for the language model by either of its two names). The user's rules keep their order and content.
std::vector<CleanupRule> withMissingExampleRules(std::vector<CleanupRule> rules, const KnownFolders &folders);

/// The stored rules brought up to the current set: missing examples appended, "Dokumente aus Downloads mit KI einsortieren"
/// renamed to "Dokumente mit KI einsortieren".
std::vector<CleanupRule> upgradedRules(std::vector<CleanupRule> rules, const KnownFolders &folders);

} // namespace brellin

#pragma once

namespace brellin {

/// What a rule, or all of them together, make of a file.
enum class RuleVerdict {
    Takes,
    // A rule takes the file, but it stays:
    Protected,     ///< by a profile
    TargetRefused, ///< the agent must not write to the target, or it is no absolute path
    AlreadyCopied, ///< the target already contains a copy
    NamedByScript,
    NoRule, ///< of all rules together: none takes it
    // Why a single rule does not take it:
    RuleOff,
    SourceRefused,  ///< the rule's folder is a system location or not a valid path
    OutsideSource,  ///< the file is not in the rule's folder
    ConditionFails, ///< see `RuleExplanation::conditions`
    NotLookedAt,    ///< hidden, a script, an unfinished download, inside a package, or not a file
    NothingToDo     ///< already in place or already named so, or the target or name is invalid
};

} // namespace brellin

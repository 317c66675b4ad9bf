#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/NamePattern.h"
#include "Agent/Rules/RuleWalk.h"
#include "Base/LocalDays.h"
#include "Guard/RulePath.h"

#include <QDate>

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace brellin {

/// A target path up to its first placeholder: every folder it expands to is at or below this one.
Location fixedPart(const QString &target);

/// Computes the destinations of one rule. Caches the folders its placeholders expand to.
class RuleTargets {
public:
    /// The rule must outlive this object. `now` is used for files without a creation time.
    RuleTargets(const CleanupRule &rule, Location home, Instant now);

    /// What the rule does with a file of this source; nullopt if the file is already in place or already named so, or
    /// if the target or name is invalid.
    std::optional<Candidate> candidate(const WalkedFile &file, const RuleSource &source);
    /// Whether a rename rule skips a file because its name already matches the pattern.
    bool keepsItsName(const WalkedFile &file);

private:
    struct Target {
        std::optional<Location> folder;
        std::string resolved;
        Location noFolder; ///< what is written in place of an absolute path; relative
    };

    bool setFolderTarget(Candidate &candidate, const WalkedFile &file, const RuleSource &source);
    bool setNewName(Candidate &candidate, const WalkedFile &file);
    bool setChosenByModel(Candidate &candidate) const;
    const Target &targetOf(const WalkedFile &file);
    Instant dateOf(const WalkedFile &file) const { return file.created.value_or(m_now); }
    std::string newName(const WalkedFile &file);
    std::string expandedName(const WalkedFile &file) const;
    std::optional<QString> remadeName(const WalkedFile &file);

    const CleanupRule &m_rule;
    const Location m_home;
    const Instant m_now;
    const QString m_pattern; ///< target pattern with {Name} replaced by a blank
    const bool m_patternHasType;
    NamePattern m_names;
    LocalDays m_days;
    std::map<std::pair<QDate, std::string>, Target> m_targets;
};

} // namespace brellin

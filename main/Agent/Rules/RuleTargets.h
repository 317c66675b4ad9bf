#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/NamePattern.h"
#include "Agent/Rules/RuleWalk.h"
#include "Guard/RulePath.h"

#include <QDate>

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace brellin {

/// The calendar day of many instants: asking the system costs several file calls each time, so every day is asked for once.
class LocalDays {
public:
    QDate of(Instant instant);

private:
    struct Day {
        Instant end;
        QDate date;
    };
    std::map<Instant, Day> m_days; ///< by their beginning
};

/// Where one rule puts files. Remembers the folders that its placeholders led to.
class RuleTargets {
public:
    /// The rule outlives it. `now` dates files whose creation the file system does not keep.
    RuleTargets(const CleanupRule &rule, Location home, Instant now);

    /// What the rule would do with a file of this source; nothing where that is nothing: the file is in its place already,
    /// has its name, or the rule's text leads nowhere.
    std::optional<Candidate> candidate(const WalkedFile &file, const RuleSource &source);
    /// Whether a renaming rule leaves a file its name because that already looks like one of the rule's.
    bool keepsItsName(const WalkedFile &file);

private:
    struct Target {
        std::optional<Location> folder;
        std::string resolved;
    };

    bool setFolderTarget(Candidate &candidate, const WalkedFile &file, const RuleSource &source);
    bool setNewName(Candidate &candidate, const WalkedFile &file);
    bool setChosenByModel(Candidate &candidate) const;
    const Target &targetOf(const WalkedFile &file);
    Instant dateOf(const WalkedFile &file) const { return file.created.value_or(m_now); }
    std::string newName(const WalkedFile &file);
    std::optional<QString> remadeName(const WalkedFile &file);

    const CleanupRule &m_rule;
    const Location m_home;
    const Instant m_now;
    const QString m_pattern; ///< of the target, without names
    const bool m_patternHasType;
    NamePattern m_names;
    LocalDays m_days;
    std::map<std::pair<QDate, std::string>, Target> m_targets;
};

} // namespace brellin

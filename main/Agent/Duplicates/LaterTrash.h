#pragma once

#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Rules/RuleMatching.h"

#include <map>
#include <set>
#include <vector>

namespace brellin {

/// Predicts which files the rules will trash in time: what a trash rule skips today as too young it takes later, and what
/// another rule moves may be trashed at its new place. Such a file must not be the one that is kept of a group of
/// duplicates.
class LaterTrash {
public:
    /// Evaluates the rules that apply to the files of these pairs, the trash rules without their age conditions. Fails
    /// only when cancelled.
    static Result<LaterTrash> of(const SystemLocations &locations, const RuleMatching &matching,
                                 std::vector<CleanupRule> rules, const std::vector<DuplicatePair> &pairs,
                                 const JobControl *control);

    /// Whether a rule will trash the kept file, but not the duplicate as well.
    bool endangers(const FileState &kept, const FileState &duplicate) const;

private:
    void addMoved(const std::vector<CleanupRule> &rules, const Location &home, const std::vector<DuplicatePair> &pairs);

    std::map<FileIdentity, std::set<QUuid>> m_rules; ///< by the file they take
};

/// The enabled rules that apply to a folder of at least one of the files, compared by device and inode; in their order.
std::vector<CleanupRule> rulesReaching(const std::vector<CleanupRule> &rules, const std::vector<Location> &files,
                                       const Location &home);

} // namespace brellin

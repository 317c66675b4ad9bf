#pragma once

#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Rules/RuleMatching.h"

#include <map>
#include <vector>

namespace brellin {

/// Tells which files the rules trash one day: what a trash rule leaves because it is too young, it takes when it is old
/// enough. Such a file is no safe place for a content whose other copies go.
class LaterTrash {
public:
    /// Tries the rules that reach the files of the pairs on the disk, the trash rules without their conditions on age. Fails
    /// only when cancelled.
    static Result<LaterTrash> of(const SystemLocations &locations, const RuleMatching &matching,
                                 std::vector<CleanupRule> rules, const std::vector<DuplicatePair> &pairs,
                                 const JobControl *control);

    /// Whether a kept file goes one day, and its duplicate not by the same rule.
    bool endangers(const FileState &kept, const FileState &duplicate) const;

private:
    std::map<FileIdentity, QUuid> m_rules; ///< by the file that they take
};

/// The enabled rules that look into a folder in which some of the files lie, by whatever links or mounts, in their order.
std::vector<CleanupRule> rulesReaching(const std::vector<CleanupRule> &rules, const std::vector<Location> &files,
                                       const Location &home);

} // namespace brellin

#pragma once

#include "Agent/Rules/RuleConditions.h"
#include "Disk/FileAttributes.h"
#include "Guard/EntryFolders.h"

#include <QUuid>

#include <set>
#include <vector>

namespace brellin {

/// Follows files through the rules that will move them, to find the trash rules that take them at their new place. Ages
/// are ignored, since the files grow older. A target with placeholders or one chosen by the model means any folder below
/// its fixed part. New names given by rename rules are not considered.
class LaterMoves {
public:
    /// Resolves the folders of the enabled rules.
    LaterMoves(const std::vector<CleanupRule> &rules, const Location &home);

    /// The trash rules that apply to the file once another rule has moved it, in one move or several.
    std::set<QUuid> trashRules(const Location &file, const FileState &state);

private:
    struct Place {
        Location folder;
        bool isAbove = false; ///< the file is somewhere below `folder`, not in it
    };
    struct Rule {
        QUuid id;
        RuleConditions conditions;
        bool waits = false; ///< has an age condition, so later rules may get the file first
        Location source;
        bool includeSubfolders = false;
        std::optional<Place> target; ///< nullopt: trashes

        bool reaches(const Place &place) const;
        bool takesAlways(const Place &place) const;
    };
    void add(const CleanupRule &rule, const Location &home);

    std::vector<Rule> m_rules;
    EntryFolders m_folders;
};

} // namespace brellin

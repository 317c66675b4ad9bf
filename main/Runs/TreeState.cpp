#include "Runs/TreeState.h"

#include "Disk/Walk.h"

#include <algorithm>

namespace brellin {

Result<TreeState> TreeState::of(const Location &folder, const JobControl *control)
{
    TreeState state;
    bool unknown = false;
    const auto add = [&](const WalkEntry &entry) {
        unknown = unknown || entry.unreadable;
        if (!entry.attributes.isFile() && !entry.attributes.isLink())
            return WalkStep::Continue;
        ++state.entries;
        if (entry.attributes.isFile()) {
            state.bytes += entry.attributes.size;
            state.newest = std::max(state.newest.value_or(entry.attributes.modified), entry.attributes.modified);
        }
        return WalkStep::Continue;
    };
    const WalkOptions options{.attributes = Attribute::Size | Attribute::Modified, .otherVolumes = false, .prune = {}};
    const WalkOutcome walked = TRY(walk(folder, options, add, control));
    if (unknown || !walked.unreadable.empty())
        return failure(Failure::system(EACCES));
    return state;
}

} // namespace brellin

#include "Runs/LeftCopy.h"

#include "Disk/Walk.h"
#include "Runs/Placement.h"

namespace brellin {

namespace {

/// Whether every entry of the copy exists in the original with the same kind. Sizes may differ: the last file may be
/// incomplete.
bool holdsAllOf(const Location &original, const Location &copy)
{
    bool holdsAll = true;
    const Result<WalkOutcome> walked = walk(copy, {.prune = {}}, [&](const WalkEntry &entry) {
        const Location counterpart = original / entry.location().lexically_relative(copy);
        const Result<FileAttributes> there = readAttributes(counterpart);
        holdsAll = there && there->kind == entry.attributes.kind;
        return holdsAll ? WalkStep::Continue : WalkStep::Stop;
    });
    return walked && walked->unreadable.empty() && holdsAll;
}

} // namespace

bool isSuperfluous(const Location &copy, const Location &original, const EntryMark &originalMark)
{
    if (!copy.filename().native().starts_with(Placement::temporaryPrefix) || !originalMark.isAt(original))
        return false;
    const Result<FileAttributes> what = readAttributes(copy);
    return what && (!what->isFolder() || holdsAllOf(original, copy));
}

} // namespace brellin

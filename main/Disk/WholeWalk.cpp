#include "Disk/WholeWalk.h"

#include <cerrno>

namespace brellin {

Result<void> walkWhole(const Location &folder, const WalkOptions &options,
                       const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control)
{
    bool complete = true;
    const auto look = [&](const WalkEntry &entry) {
        complete = !entry.unreadable;
        return complete ? visit(entry) : WalkStep::Stop;
    };
    const WalkOutcome outcome = TRY(walk(folder, options, look, control));
    return complete && outcome.unreadable.empty() ? Result<void>() : failure(Failure::system(EACCES));
}

} // namespace brellin

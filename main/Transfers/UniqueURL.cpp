#include "Disk/FreeName.h"
#include "Transfers/TransferEngine.h"

namespace brellin {

Location uniqueURL(const std::string &name, const Location &folder, const std::set<Location> &taken)
{
    Location free = unique(folder / name);
    if (!taken.contains(free))
        return free;
    const std::size_t limit = nameLimit(folder);
    Location candidate = free;
    // Stop at a name that cannot be read, like `unique`: the transfer then fails by itself.
    for (int number = 2; taken.contains(candidate) || readAttributes(candidate); ++number)
        candidate = folder / numberedName(name, number, limit);
    return candidate;
}

} // namespace brellin

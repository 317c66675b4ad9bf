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
    // As `unique` does: where nobody can tell, the transfer itself has to fail; counting on would never end.
    for (int number = 2; taken.contains(candidate) || readAttributes(candidate); ++number)
        candidate = folder / numberedName(name, number, limit);
    return candidate;
}

} // namespace brellin

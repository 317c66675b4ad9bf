#include "FileOperations/OperationOutcome.h"

#include <algorithm>
#include <iterator>

namespace brellin {

std::vector<Location> OperationOutcome::places() const
{
    std::vector<Location> all;
    std::ranges::transform(action.entries, std::back_inserter(all), &UserAction::Entry::to);
    return all;
}

QString OperationOutcome::message() const
{
    return lead + linesOf(failures).join(u'\n');
}

} // namespace brellin

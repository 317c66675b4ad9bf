#include "PhotoViewer/Viewing.h"

namespace brellin {

Viewing viewingAt(std::size_t index, std::size_t count, const std::function<Location(std::size_t)> &entryAt)
{
    Viewing viewing{entryAt(index), {}, {}, index + 1, count};
    if (index > 0)
        viewing.before = entryAt(index - 1);
    if (index + 1 < count)
        viewing.after = entryAt(index + 1);
    return viewing;
}

} // namespace brellin

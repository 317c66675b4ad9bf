#include "ContentView/Screens/Crumbs.h"

#include <algorithm>

namespace brellin {

std::vector<Crumb> crumbsOf(const Location &folder, const KnownFolders &folders)
{
    std::vector<Crumb> crumbs;
    for (Location step = folder; step != folders.home; step = step.parent_path()) {
        const bool root = step == step.parent_path();
        crumbs.push_back({root ? QStringLiteral("Startvolume") : folders.title(step), step});
        if (root)
            break;
    }
    if (isAtOrBelow(folder, folders.home))
        crumbs.push_back({QStringLiteral("Benutzerordner"), folders.home});
    std::ranges::reverse(crumbs);
    return crumbs;
}

} // namespace brellin

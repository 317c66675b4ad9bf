#include "Places/Crumbs.h"

#include <QStringList>

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

QString wayTo(const Location &folder, const KnownFolders &folders)
{
    std::vector<Crumb> crumbs = crumbsOf(folder, folders);
    if (crumbs.size() > 1)
        crumbs.erase(crumbs.begin());
    QStringList words;
    for (const Crumb &crumb : crumbs)
        words.append(crumb.title);
    return words.join(QStringLiteral(" › "));
}

} // namespace brellin

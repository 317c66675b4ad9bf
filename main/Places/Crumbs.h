#pragma once

#include "Base/Location.h"
#include "Places/KnownFolders.h"

#include <QString>

#include <vector>

namespace brellin {

/// One folder on the path shown in the address bar.
struct Crumb {
    QString title;
    Location folder;

    bool operator==(const Crumb &) const = default;
};

/// The folders on the path to `folder`, starting at "Benutzerordner" inside the home folder, otherwise at "Startvolume"
/// (the root).
std::vector<Crumb> crumbsOf(const Location &folder, const KnownFolders &folders);

/// The path in one line, relative to the home folder: „Dokumente › Rechnungen › 2026“.
QString wayTo(const Location &folder, const KnownFolders &folders);

} // namespace brellin

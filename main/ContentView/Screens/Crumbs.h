#pragma once

#include "Base/Location.h"
#include "Places/KnownFolders.h"

#include <QString>

#include <vector>

namespace brellin {

/// One step of the way to a folder as the address bar shows it.
struct Crumb {
    QString title;
    Location folder;

    bool operator==(const Crumb &) const = default;
};

/// The way to `folder`: from "Benutzerordner" where it lies in the home folder, else from "Startvolume" (the root).
std::vector<Crumb> crumbsOf(const Location &folder, const KnownFolders &folders);

} // namespace brellin

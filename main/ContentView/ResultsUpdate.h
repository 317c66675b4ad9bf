#pragma once

#include "ContentView/FileItems.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// An entry that the program itself changed: moved, created (`from` is empty), removed (`to` is empty), or changed in place
/// (both are equal).
struct ChangedEntry {
    Location from;
    Location to;

    bool operator==(const ChangedEntry &) const = default;
};

/// The items of a search or tag after `changes`: what left is removed with everything below it, what is at its new place
/// is read again and kept if it `belongs`. Blocking.
FileItems updatedResults(const FileItems &items, const std::vector<ChangedEntry> &changes,
                         const std::function<bool(const FileItem &)> &belongs);

/// The paths of the items after `changes`; those that are gone are missing.
std::set<std::string> pathsAfter(const FileItems &items, const std::vector<ChangedEntry> &changes);

} // namespace brellin

#pragma once

#include "Base/Location.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// Whether an entry of this name alone marks its folder as a software project (".git", "package.json", "App.xcodeproj"
/// …).
bool isProjectMarker(std::string_view name);

/// Whether a file name belongs to the code of a project: a marker, manifest, lock, build or configuration file, script
/// or source code. Judged by the name alone.
bool isCodeName(std::string_view name);

/// Whether the folder directly contains a marker.
bool isMarkedProject(const Location &folder);

/// Whether the folder is a software project: it directly contains a marker or a script. False if it cannot be read.
bool isProject(const Location &folder);

/// Finds the marked projects that contain a location. Caches every folder it looks at, so use one instance per scan.
class ProjectRoots {
public:
    /// The home folder and its parents never count as projects: people keep their dotfiles under version control there.
    explicit ProjectRoots(const Location &home);

    /// The innermost marked project above a location, never the location itself. Expects a standardised path without
    /// symlinks.
    std::optional<Location> above(const Location &location);
    /// The same for what lies in a folder.
    std::optional<Location> aboveEntriesOf(const Location &folder);
    /// The outermost one.
    std::optional<Location> outermostAbove(const Location &location);

private:
    std::optional<Location> rootAt(const Location &folder);

    Location m_home;
    std::map<std::string, std::optional<Location>, std::less<>> m_roots; ///< by folder
};

} // namespace brellin

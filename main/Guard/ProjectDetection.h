#pragma once

#include "Base/Location.h"

#include <map>
#include <optional>
#include <string_view>

namespace brellin {

/// Whether an entry of this name makes the folder around it a software project by itself (".git", "package.json",
/// "App.xcodeproj" …).
bool isProjectMarker(std::string_view name);

/// Whether a file of this name belongs to the code of a project: a marker, a manifest, lock or build file, a script, source
/// code, or what programs are configured with. Decided by the name alone.
bool isCodeName(std::string_view name);

/// Whether a marker lies directly in the folder.
bool isMarkedProject(const Location &folder);

/// Whether the folder is a software project: a marker or a script lies directly in it. One that cannot be read is none.
bool isProject(const Location &folder);

/// Finds the marked projects that locations lie in. Every folder is looked at once, so use one for one search only.
class ProjectRoots {
public:
    /// The home folder and what lies above it are never projects: people keep their settings' history there.
    explicit ProjectRoots(const Location &home);

    /// The innermost marked project around a location; a project does not lie in itself. Standardised, without links.
    std::optional<Location> above(const Location &location);
    /// The outermost one.
    std::optional<Location> outermostAbove(const Location &location);

private:
    std::optional<Location> rootAt(const Location &folder);

    Location m_home;
    std::map<Location, std::optional<Location>> m_roots;
};

} // namespace brellin

#include "Guard/ProjectDetection.h"

#include "Disk/FileTypes.h"
#include "Disk/Walk.h"
#include "Guard/Placeholders.h"
#include "Guard/SystemLocations.h"

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

namespace brellin {

namespace {

constexpr auto markers = std::to_array<std::string_view>(
    {".git", "package.json", "Package.swift", "pyproject.toml", "Cargo.toml", "go.mod", "Gemfile", "composer.json"});
constexpr std::string_view bundleMarker = ".xcodeproj";

/// Build and publishing files that no extension identifies as source code. Sorted.
constexpr auto buildFiles = std::to_array<std::string_view>({"BUILD",
                                                             "Brewfile",
                                                             "CMakeLists.txt",
                                                             "Cartfile",
                                                             "Cartfile.resolved",
                                                             "Dockerfile",
                                                             "Gemfile.lock",
                                                             "Jenkinsfile",
                                                             "Justfile",
                                                             "Makefile",
                                                             "Pipfile",
                                                             "Podfile",
                                                             "Procfile",
                                                             "Rakefile",
                                                             "Vagrantfile",
                                                             "WORKSPACE",
                                                             "go.sum",
                                                             "gradlew",
                                                             "justfile",
                                                             "makefile",
                                                             "meson.build",
                                                             "meson_options.txt",
                                                             "package-lock.json",
                                                             "pom.xml",
                                                             "requirements.txt",
                                                             "setup.cfg"});

/// Code and configuration that the shared file types know only as text, or not at all. Sorted.
constexpr auto codeExtensions = std::to_array<std::string_view>(
    {"cfg",  "csproj", "css", "gradle", "htm",  "html",    "less", "lock",     "map",         "md",   "plist", "sass",
     "scss", "sln",    "sql", "svelte", "toml", "vcxproj", "vue",  "xcconfig", "xcworkspace", "yaml", "yml"});

static_assert(std::ranges::is_sorted(buildFiles) && std::ranges::is_sorted(codeExtensions));

bool anyEntry(const Location &folder, const std::function<bool(std::string_view)> &holds)
{
    bool found = false;
    const auto look = [&](const WalkEntry &entry) {
        found = holds(entry.name);
        return found ? WalkStep::Stop : WalkStep::Continue;
    };
    const WalkOptions options{.subfolders = false, .prune = {}};
    // An unreadable folder counts as empty.
    const bool read = walk(folder, options, look).has_value();
    return read && found;
}

} // namespace

bool isProjectMarker(std::string_view name)
{
    return std::ranges::find(markers, name) != markers.end() || name.ends_with(bundleMarker);
}

bool isCodeName(std::string_view name)
{
    if (isProjectMarker(name) || std::ranges::binary_search(buildFiles, name))
        return true;
    const std::string extension = lowerExtensionOf(name);
    if (isScriptExtension(extension) || std::ranges::binary_search(codeExtensions, std::string_view(extension)))
        return true;
    const FileType &type = fileTypeOf(extension);
    return type.conformsTo(TypeTrait::SourceCode) || type.conformsTo(TypeTrait::Script) ||
           type.conformsTo(TypeTrait::Json);
}

bool isMarkedProject(const Location &folder)
{
    const auto isThere = [&](std::string_view name) { return readAttributes(folder / name).has_value(); };
    return std::ranges::any_of(markers, isThere) || anyEntry(folder, isProjectMarker);
}

bool isProject(const Location &folder)
{
    return isMarkedProject(folder) ||
           anyEntry(folder, [](std::string_view name) { return isScriptExtension(lowerExtensionOf(name)); });
}

ProjectRoots::ProjectRoots(const Location &home) : m_home(resolvedLocation(home).value_or(home)) {}

std::optional<Location> ProjectRoots::rootAt(const Location &folder)
{
    std::vector<Location> unknown;
    std::optional<Location> root;
    for (Location at = folder; !isAtOrBelow(m_home, at) && at.has_relative_path(); at = at.parent_path()) {
        const auto known = m_roots.find(at.native());
        if (known != m_roots.end()) {
            root = known->second;
            break;
        }
        unknown.push_back(at);
        if (isMarkedProject(at)) {
            root = at;
            break;
        }
    }
    for (const Location &at : unknown)
        m_roots.emplace(at.native(), root);
    return root;
}

std::optional<Location> ProjectRoots::above(const Location &location)
{
    // Most questions are about many entries of one folder.
    const std::string_view path = location.native();
    const auto known = m_roots.find(path.substr(0, path.rfind('/')));
    return known != m_roots.end() ? known->second : rootAt(location.parent_path());
}

std::optional<Location> ProjectRoots::aboveEntriesOf(const Location &folder)
{
    const auto known = m_roots.find(folder.native());
    return known != m_roots.end() ? known->second : rootAt(folder);
}

std::optional<Location> ProjectRoots::outermostAbove(const Location &location)
{
    std::optional<Location> root;
    for (std::optional<Location> next = above(location); next; next = above(*next))
        root = next;
    return root;
}

} // namespace brellin

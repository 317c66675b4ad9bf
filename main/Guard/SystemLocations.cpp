#include "Guard/SystemLocations.h"

#include "Guard/FolderEntry.h"
#include "Guard/RealPath.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace brellin {

namespace {

constexpr std::string_view libraryName = "Library";
constexpr std::string_view cloudPath = "Library/Mobile Documents/com~apple~CloudDocs";

/// System calls would cut a path with a NUL byte short, and a relative path depends on the working directory.
bool isUsable(std::string_view path)
{
    return path.starts_with('/') && path.find('\0') == std::string_view::npos;
}

std::string joined(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name);
}

/// Whether a path is a folder's path and a name.
bool isEntryIn(std::string_view folder, std::string_view path)
{
    if (!path.starts_with(folder) || path.size() <= folder.size() + 1 || path[folder.size()] != '/')
        return false;
    const std::string_view name = path.substr(folder.size() + 1);
    return name != "." && name != ".." && name.find('/') == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

/// Whether the folder is also found under its name in swapped case.
bool diskIgnoresCase(const std::string &folder)
{
    std::string swapped = folder;
    const auto name = swapped.begin() + static_cast<std::ptrdiff_t>(swapped.rfind('/') + 1);
    std::transform(name, swapped.end(), name, [](char c) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        return letter ? static_cast<char>(c ^ ' ') : c;
    });
    struct stat named{};
    struct stat other{};
    return swapped != folder && ::stat(folder.c_str(), &named) == 0 && ::stat(swapped.c_str(), &other) == 0 &&
           named.st_dev == other.st_dev && named.st_ino == other.st_ino;
}

std::optional<std::string> resolvedPath(std::string path)
{
    if (!isUsable(path))
        return std::nullopt;
    std::string rest;
    while (true) {
        std::string found;
        const int error = realPath(path, found);
        if (error == 0)
            return rest.empty() ? found : joined(found, rest);
        // For what is missing or not readable, the parent decides.
        const bool absent = error == ENOENT || error == ENOTDIR || error == EACCES || error == ENAMETOOLONG;
        if (!absent || path == "/")
            return std::nullopt;
        const std::size_t slash = path.rfind('/');
        rest = rest.empty() ? path.substr(slash + 1) : joined(std::string_view(path).substr(slash + 1), rest);
        path.resize(std::max<std::size_t>(slash, 1));
    }
}

} // namespace

std::optional<Location> resolvedLocation(const Location &location)
{
    return resolvedPath(location.native());
}

/// A path under test, case-folded on first use.
class SystemLocations::Tested {
public:
    explicit Tested(std::string_view path) : m_path(path) {}

    std::string_view path() const { return m_path; }
    bool isAtOrBelow(const Place &place)
    {
        if (!place.ignoresCase)
            return brellin::isAtOrBelow(m_path, std::string_view(place.folder));
        const QString &text = foldedText();
        return text.startsWith(place.foldedFolder) &&
               (text.size() == place.foldedFolder.size() || text.at(place.foldedFolder.size()) == u'/');
    }
    bool holds(const Place &place)
    {
        if (!place.ignoresCase)
            return brellin::isAtOrBelow(std::string_view(place.folder), m_path);
        const QString &text = foldedText();
        return place.foldedFolder.startsWith(text) &&
               (text.size() == place.foldedFolder.size() || place.foldedFolder.at(text.size()) == u'/');
    }

private:
    const QString &foldedText()
    {
        if (m_folded.isNull())
            m_folded = folded(shown(m_path));
        return m_folded;
    }

    std::string_view m_path;
    QString m_folded;
};

QString SystemLocations::message()
{
    return QStringLiteral("System, Programme und Library werden nie angefasst.");
}

SystemLocations::SystemLocations(const Location &home) : SystemLocations(home, SystemFolders::ofThisSystem()) {}

SystemLocations::SystemLocations(const Location &home, const std::vector<Location> &refused)
    : SystemLocations(home, SystemFolders{refused, {}, SystemFolders::ofThisSystem().dotFoldersInHome})
{
}

SystemLocations::SystemLocations(const Location &home, const SystemFolders &system)
    : m_home(home)
    , m_root(identityOf("/"))
    , m_dotFoldersInHome(system.dotFoldersInHome)
{
    if (isUsable(home.native())) {
        m_home = standardised(home);
        addHome(m_home);
        if (const std::optional<Location> real = resolvedLocation(m_home); real && *real != m_home)
            addHome(*real);
    }
    for (const Location &folder : system.refused) {
        add(folder, Verdict::Refused);
        addRefusedAsResolved(folder);
    }
    for (const Location &folder : system.allowed)
        add(folder, Verdict::Allowed);
    for (const Place &place : m_places)
        identify(place.folder, place.verdict);
    if (m_dotFoldersInHome)
        identifyDotFolders();
}

/// If two verdicts meet on one folder, the refusal wins.
void SystemLocations::identify(const std::string &folder, Verdict verdict)
{
    const Result<FileAttributes> attributes = readAttributes(folder);
    if (!attributes || !attributes->isFolder())
        return;
    const auto [known, isNew] = m_known.try_emplace(attributes->identity, folder, verdict);
    if (!isNew && verdict == Verdict::Refused)
        known->second = {folder, verdict};
}

void SystemLocations::identifyDotFolders()
{
    std::error_code unreadable;
    for (auto at = std::filesystem::directory_iterator(m_home, unreadable);
         !unreadable && at != std::filesystem::directory_iterator(); at.increment(unreadable)) {
        if (isDotName(at->path().filename().native()))
            identify(at->path().native(), Verdict::Refused);
    }
}

/// Inode numbers are reused, so a known identity only counts while its folder still has it.
std::optional<SystemLocations::Verdict> SystemLocations::verdictOn(const FileIdentity &folder) const
{
    const auto known = m_known.find(folder);
    if (known == m_known.end())
        return std::nullopt;
    const Result<FileAttributes> now = readAttributes(known->second.folder);
    return now && now->identity == folder ? std::optional(known->second.verdict) : std::nullopt;
}

bool SystemLocations::mayEnter(std::string_view standardised, const FileIdentity &folder) const
{
    return isAllowedText(standardised) && verdictOn(folder) != Verdict::Refused;
}

bool SystemLocations::isAllowedByIdentity(const std::string &real) const
{
    const std::optional<FileIdentity> itself = identityOf(real);
    return (!itself || itself != m_root) && isWayUpAllowed(real);
}

/// As with paths, the deepest known folder decides, beginning with the location itself.
bool SystemLocations::isWayUpAllowed(std::string real) const
{
    // An exception that was created later ("/run/media", with the first stick) has no known identity.
    const auto isException = [this](const std::string &path) {
        return std::ranges::any_of(
            m_places, [&](const Place &place) { return place.verdict == Verdict::Allowed && place.folder == path; });
    };
    while (real != "/") {
        const std::optional<FileIdentity> identity = identityOf(real);
        if (const std::optional<Verdict> verdict = identity ? verdictOn(*identity) : std::nullopt)
            return *verdict == Verdict::Allowed;
        if (isException(real))
            return true;
        real.resize(std::max<std::size_t>(real.rfind('/'), 1));
    }
    return true;
}

void SystemLocations::addHome(const Location &home)
{
    add(home, Verdict::Allowed);
    m_homes.push_back(m_places.back());
    add(home / libraryName, Verdict::Refused);
    add(home / cloudPath, Verdict::Allowed);
}

void SystemLocations::add(const Location &folder, Verdict verdict)
{
    Place place{
        .folder = folder.native(), .verdict = verdict, .ignoresCase = diskIgnoresCase(folder), .foldedFolder = {}};
    if (place.ignoresCase)
        place.foldedFolder = folded(shown(folder));
    m_places.push_back(std::move(place));
}

/// A system folder may be a symlink: refuse its target too, but never the home folder or a folder above it.
void SystemLocations::addRefusedAsResolved(const Location &folder)
{
    const std::optional<Location> real = resolvedLocation(folder);
    if (!real || *real == folder)
        return;
    Tested tested(real->native());
    if (std::ranges::none_of(m_homes, [&](const Place &home) { return tested.holds(home); }))
        add(*real, Verdict::Refused);
}

bool SystemLocations::isAllowedText(std::string_view standardised) const
{
    if (!isUsable(standardised) || standardised == "/")
        return false;
    Tested tested(standardised);
    Verdict verdict = Verdict::Allowed;
    std::size_t deepest = 0;
    for (const Place &place : m_places) {
        const std::size_t depth = place.folder.size();
        if (depth < deepest || !tested.isAtOrBelow(place))
            continue;
        if (depth > deepest || place.verdict == Verdict::Refused)
            verdict = place.verdict;
        deepest = depth;
    }
    if (verdict == Verdict::Refused || !m_dotFoldersInHome)
        return verdict == Verdict::Allowed;
    return std::ranges::none_of(m_homes, [&](const Place &home) {
        const std::size_t name = home.folder == "/" ? 1 : home.folder.size() + 1;
        return standardised.size() > name && standardised[name] == '.' && tested.isAtOrBelow(home);
    });
}

bool SystemLocations::holdsRefused(std::string_view standardised) const
{
    Tested tested(standardised);
    return std::ranges::any_of(
        m_places, [&](const Place &place) { return place.verdict == Verdict::Refused && tested.holds(place); });
}

bool SystemLocations::isAllowed(const Location &location) const
{
    const std::string &path = location.native();
    if (!isUsable(path))
        return false;
    const auto leadsToAllowed = [&](const std::string &way) {
        const std::optional<std::string> real = resolvedPath(way);
        return real && isAllowedText(std::string_view(*real)) && isAllowedByIdentity(*real);
    };
    if (isStandardised(path))
        return isAllowedText(std::string_view(path)) && leadsToAllowed(path);
    // The kernel resolves ".." behind a symlink from the link's target: both readings must be harmless.
    const std::string normal = standardised(location).native();
    return isAllowedText(std::string_view(normal)) && leadsToAllowed(normal) && leadsToAllowed(path);
}

bool SystemLocations::isAllowedEntry(const Location &location) const
{
    const std::string &path = location.native();
    if (!isUsable(path))
        return false;
    if (!isStandardised(path))
        return isAllowed(location) && isAllowedEntry(standardised(location));
    // A refusal by text needs no disk access.
    if (!isAllowedText(std::string_view(path)) || holdsRefused(path))
        return false;
    const std::optional<std::string> parent = resolvedPath(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1)));
    const std::optional<std::string> real = parent ? allowedByText(path, *parent) : std::nullopt;
    return real && isAllowedByIdentity(*real);
}

/// Where no known place lies at or below a folder, its entries are judged by their text as it is. The home folder is such
/// a place.
bool SystemLocations::isAllAllowedIn(const std::string &folder) const
{
    Tested tested(folder);
    return isStandardised(folder) && isAllowedText(std::string_view(folder)) &&
           std::ranges::none_of(m_places, [&](const Place &place) { return tested.holds(place); });
}

SystemLocations::Examined SystemLocations::examined(std::string realFolder) const
{
    const bool allowed = isUsable(realFolder) && isWayUpAllowed(realFolder);
    const bool all = allowed && isAllAllowedIn(realFolder);
    return {std::move(realFolder), allowed, all};
}

bool SystemLocations::isAllowedFileIn(const Examined &folder, const Location &standardised) const
{
    const std::string &path = standardised.native();
    if (folder.allAllowed && isEntryIn(folder.real, path))
        return true;
    return folder.allowed && isUsable(path) && isStandardised(path) && isAllowedText(std::string_view(path)) &&
           !holdsRefused(path) && allowedByText(path, folder.real);
}

/// The resolved path of an entry, unless its text is refused; the caller has checked the path as given.
std::optional<std::string> SystemLocations::allowedByText(const std::string &path, const std::string &realFolder) const
{
    std::string real = joined(realFolder, std::string_view(path).substr(path.rfind('/') + 1));
    const bool allowed = real == path || (isAllowedText(std::string_view(real)) && !holdsRefused(real));
    return allowed ? std::optional(std::move(real)) : std::nullopt;
}

} // namespace brellin

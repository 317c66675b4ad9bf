#include "Guard/FolderProfile.h"

#include <algorithm>

namespace brellin {

namespace {

/// Names in NFC: volumes differ in how they compose characters.
std::string composedEntry(const Location &location)
{
    return shown(location).normalized(QString::NormalizationForm_C).toStdString();
}

} // namespace

Location FolderProfile::root() const
{
    return standardised(locationFromText(rootPath));
}

std::optional<Location> FolderProfile::relative(const Location &location) const
{
    const Location normal = standardised(location);
    const Location top = root();
    if (rootPath.isEmpty() || normal == top || !isAtOrBelow(normal, top))
        return std::nullopt;
    return normal.lexically_relative(top);
}

bool FolderProfile::isProtected(const Location &location) const
{
    const std::optional<Location> inside = relative(location);
    if (!inside)
        return false;
    const std::string below = composedEntry(*inside);
    return std::ranges::any_of(protectedEntries, [&below](const ProtectedEntry &entry) {
        const std::string guarded = composedEntry(Location(locationFromText(entry.path)).lexically_normal());
        const std::string_view folder = std::string_view(guarded).substr(0, guarded.find_last_not_of('/') + 1);
        return !folder.empty() && isAtOrBelow(std::string_view(below), folder);
    });
}

} // namespace brellin

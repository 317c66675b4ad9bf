#include "Disk/SystemTrash.h"

#include "Disk/Linux/SystemTrashFolder.h"
#include "Disk/MayRemove.h"
#include "Disk/MountTable.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace fs = std::filesystem;

namespace {

/// Resolves links in the path as far as its folders exist, but not the entry itself.
Location resolved(const Location &entry)
{
    std::error_code error;
    const Location folder = fs::weakly_canonical(entry.parent_path(), error);
    return error ? entry : folder / entry.filename();
}

bool isIdentity(const Location &location, const FileIdentity &identity)
{
    const auto attributes = readAttributes(location);
    return attributes && attributes->identity == identity;
}

/// Whether `path` (resolved) is the entry with this identity or below it.
bool leadsThrough(Location path, const FileIdentity &identity)
{
    for (; path.has_relative_path(); path = path.parent_path()) {
        if (isIdentity(path, identity))
            return true;
    }
    return false;
}

/// Whether `entry` (resolved) is, or is in, any user's Trash on its volume.
bool isInVolumeTrash(const Location &entry, const Location &top)
{
    const Location below = entry.lexically_relative(top);
    const std::string first = below.empty() ? std::string() : below.begin()->native();
    return first == ".Trash" || first.starts_with(".Trash-");
}

Result<bool> holdsMount(const Location &folder)
{
    const std::vector<Mount> table = TRY(readMountTable());
    return std::ranges::any_of(table, [&](const Mount &mount) { return isAtOrBelow(Location(mount.point), folder); });
}

/// Facts about an entry, needed to choose a Trash.
struct Candidate {
    Location path;     ///< standardised
    Location resolved; ///< without links in its path
    Location top;      ///< top of its volume
};

Result<Candidate> examined(const Location &entry, const Location &homeTrash, const Volumes &volumes)
{
    Candidate candidate{standardised(entry), {}, {}};
    const FileAttributes attributes = TRY(readAttributes(candidate.path));
    if (!candidate.path.has_relative_path())
        return failure(Failure::system(EBUSY));
    candidate.resolved = resolved(candidate.path);
    candidate.top = TRY(volumes.top(candidate.resolved.parent_path()));
    if (attributes.isFolder() && TRY(holdsMount(candidate.resolved)))
        return failure(QStringLiteral("Darin ist ein anderer Datenträger eingebunden."));

    std::error_code error;
    const Location trash = fs::weakly_canonical(homeTrash, error);
    if (attributes.isFolder() && leadsThrough(trash, attributes.identity))
        return failure(QStringLiteral("Das ist der Papierkorb, oder er liegt darin."));
    const auto trashAttributes = readAttributes(trash);
    const bool inHomeTrash = trashAttributes && leadsThrough(candidate.resolved, trashAttributes->identity);
    if (inHomeTrash || isInVolumeTrash(candidate.resolved, candidate.top))
        return failure(QStringLiteral("Das liegt schon im Papierkorb."));
    return candidate;
}

/// Possible Trashes, best first. Entries on the home volume only go to the home Trash.
std::vector<TrashPlace> placesFor(const Candidate &candidate, const Location &homeTrash, const Volumes &volumes)
{
    // Append a name, so that a link "files" is followed.
    if (volumes.same(candidate.resolved.parent_path(), homeTrash / "files" / "any"))
        return {TrashPlace::home(homeTrash)};
    return {TrashPlace::shared(candidate.top), TrashPlace::own(candidate.top)};
}

/// The stored origin; relative to the top on volumes, so that it is valid at any mount point.
Result<std::string> originFor(const TrashPlace &place, const Candidate &candidate)
{
    if (place.kind == TrashPlace::Kind::Home)
        return candidate.path.native();
    if (!isAtOrBelow(candidate.resolved, place.top))
        return failure(Failure::system(EXDEV));
    return candidate.resolved.lexically_relative(place.top).native();
}

bool isOrigin(const TrashPlace &place, const std::optional<std::string> &recorded, const Location &original)
{
    if (!recorded)
        return false;
    const Location path = standardised(original);
    const Location absolute = place.absolute(*recorded);
    return absolute.native() == path.native() || absolute.native() == resolved(path).native();
}

bool isSameFolder(const Location &a, const Location &b)
{
    std::error_code error;
    return a == b || fs::equivalent(a, b, error);
}

/// Whether permissions allow removing the entry: write access to its folder and, with the sticky bit, ownership of one
/// of the two.
bool mayLeaveFolder(const Location &entry)
{
    const Location folder = entry.parent_path();
    const auto at = [](const Location &location) { return statusOf({AT_FDCWD, location.c_str()}); };
    const auto status = at(entry);
    const auto folderStatus = at(folder / ".");
    if (!status || !folderStatus || ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return false;
    // Moving a folder to another parent changes its "..", so it must be writable.
    if (S_ISDIR(status->st_mode) && ::faccessat(AT_FDCWD, entry.c_str(), W_OK, AT_EACCESS) != 0)
        return false;
    return !isKeptBySticky(*folderStatus, *status);
}

/// The Trash that `trashed` is directly in, by path; none if there is none of this user.
std::optional<TrashPlace> placeHolding(const Location &trashed, const Location &homeTrash, const Volumes &volumes)
{
    const Location entry = standardised(trashed);
    const Location files = entry.parent_path();
    if (files.filename() != "files")
        return std::nullopt;
    if (isSameFolder(files.parent_path(), homeTrash))
        return TrashPlace::home(homeTrash);
    const auto top = volumes.top(files);
    const Location folder = resolved(entry).parent_path().parent_path();
    if (!top)
        return std::nullopt;
    for (TrashPlace place : {TrashPlace::shared(*top), TrashPlace::own(*top)}) {
        if (folder == place.folder && TrashFolder::open(place, Missing::Fail))
            return place;
    }
    return std::nullopt;
}

} // namespace

SystemTrash::SystemTrash(const Location &homeTrash, const Volumes &volumes)
    : m_homeTrash(standardised(homeTrash))
    , m_volumes(volumes)
{
}

Result<Location> SystemTrash::put(const Location &entry)
{
    const Candidate candidate = TRY(examined(entry, m_homeTrash, m_volumes));
    const EntryPlace source = TRY(openPlace(candidate.path));
    std::error_code cause;
    for (const TrashPlace &place : placesFor(candidate, m_homeTrash, m_volumes)) {
        const auto folder = TrashFolder::open(place, Missing::Create);
        if (!folder) {
            cause = folder.error().code;
            continue;
        }
        const std::string origin = TRY(originFor(place, candidate));
        const std::string name = TRY(folder->take(source.at(), origin));
        return place.folder / "files" / name;
    }
    return failure(
        Failure{QStringLiteral("Auf diesem Datenträger gibt es keinen Papierkorb, der sich benutzen lässt."), cause});
}

bool SystemTrash::possible(const Location &entry) const
{
    const auto candidate = examined(entry, m_homeTrash, m_volumes);
    if (!candidate || !mayLeaveFolder(candidate->path))
        return false;
    return std::ranges::any_of(placesFor(*candidate, m_homeTrash, m_volumes), TrashFolder::usable);
}

Result<void> SystemTrash::restore(const Location &trashed, const Location &original, const Location &destination)
{
    const auto place = placeHolding(trashed, m_homeTrash, m_volumes);
    if (!place)
        return failure(QStringLiteral("Das liegt nicht im Papierkorb."));
    const std::string name = standardised(trashed).filename().native();
    const TrashFolder folder = TRY(TrashFolder::open(*place, Missing::Fail));
    TRY(readAttributes(trashed));
    const std::optional<std::string> recorded = folder.originOf(name);
    if (!recorded)
        return failure(QStringLiteral("Zu diesem Eintrag hat der Papierkorb keine Angaben."));
    if (!isOrigin(*place, recorded, original))
        return failure(QStringLiteral("Dieser Eintrag im Papierkorb kam von einem anderen Ort."));
    const EntryPlace target = TRY(openPlace(destination));
    return folder.give(name, target.at());
}

std::optional<Location> SystemTrash::find(const Location &original, const FileIdentity &identity) const
{
    std::vector<TrashPlace> places{TrashPlace::home(m_homeTrash)};
    if (const auto top = m_volumes.top(resolved(standardised(original)).parent_path()))
        places.insert(places.end(), {TrashPlace::shared(*top), TrashPlace::own(*top)});
    for (const TrashPlace &place : places) {
        const auto folder = TrashFolder::open(place, Missing::Fail);
        if (!folder)
            continue;
        for (const std::string &name : folder->namesOf(identity)) {
            if (isOrigin(place, folder->originOf(name), original))
                return place.folder / "files" / name;
        }
    }
    return std::nullopt;
}

bool SystemTrash::holds(const Location &location) const
{
    return placeHolding(location, m_homeTrash, m_volumes).has_value();
}

} // namespace brellin

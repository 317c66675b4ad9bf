#include "Disk/FolderFacts.h"

#include "Disk/EntryPlace.h"
#include "Disk/MetadataMark.h"

#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace brellin {

namespace {

constexpr mode_t permissionBits = 07777;

// The kernel's limits (XATTR_LIST_MAX, XATTR_SIZE_MAX).
constexpr std::size_t mostNameBytes = 65536;
constexpr std::size_t mostValueBytes = 65536;

std::map<std::string, std::string> attributesOfFolder(int folder)
{
    std::map<std::string, std::string> found;
    std::vector<char> names(mostNameBytes);
    std::vector<char> value(mostValueBytes);
    const ssize_t length = ::flistxattr(folder, names.data(), names.size());
    const char *const end = names.data() + (length > 0 ? length : 0);
    for (const char *name = names.data(); name < end; name += std::string_view(name).size() + 1) {
        const ssize_t size = isCopiedAttribute(name) ? ::fgetxattr(folder, name, value.data(), value.size()) : -1;
        if (size >= 0)
            found.emplace(name, std::string(value.data(), static_cast<std::size_t>(size)));
    }
    return found;
}

Result<Descriptor> openItself(const Location &folder)
{
    const EntryPlace place = TRY(openPlace(folder));
    return openFolder(place.at());
}

timespec timeOf(Instant instant)
{
    const auto whole = std::chrono::floor<std::chrono::seconds>(instant);
    return {static_cast<time_t>(whole.time_since_epoch().count()),
            static_cast<long>(std::chrono::nanoseconds(instant - whole).count())};
}

} // namespace

Result<FolderFacts> FolderFacts::of(const Location &folder)
{
    const Descriptor opened = TRY(openItself(folder));
    struct stat status{};
    if (::fstat(opened.number(), &status) != 0)
        return failure(Failure::lastSystem());
    FolderFacts facts;
    facts.mode = status.st_mode & permissionBits;
    facts.owner = status.st_uid;
    facts.group = status.st_gid;
    facts.modified = instantFrom(status.st_mtim);
    facts.attributes = attributesOfFolder(opened.number());
    return facts;
}

Result<void> FolderFacts::giveTo(const Location &folder) const
{
    const Descriptor opened = TRY(openItself(folder));
    // First the owner, since changing it clears setuid and setgid.
    const bool owned = ::fchown(opened.number(), owner, group) == 0;
    for (const auto &[name, value] : attributes)
        (void)::fsetxattr(opened.number(), name.c_str(), value.data(), value.size(), 0);
    // Without the owner, setuid and setgid would grant rights of somebody else.
    (void)::fchmod(opened.number(), owned ? mode : mode & ~static_cast<mode_t>(S_ISUID | S_ISGID));
    const timespec times[2] = {{0, UTIME_OMIT}, timeOf(modified)};
    (void)::futimens(opened.number(), times);
    return {};
}

} // namespace brellin

#include "Disk/Volumes.h"

#include "Disk/MountTable.h"
#include "System/ReadWhole.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace brellin {

namespace fs = std::filesystem;

namespace {

/// Device and mount: a rename requires both to be equal.
struct Ground {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint64_t mount = 0;
    bool folder = false;

    bool sameVolume(const Ground &other) const
    {
        return major == other.major && minor == other.minor && mount == other.mount;
    }
};

enum class Links { Follow, Keep };

/// None with errno set if the entry cannot be examined.
std::optional<Ground> groundOf(const Location &location, Links links)
{
    struct statx status{};
    const int flags = links == Links::Keep ? AT_SYMLINK_NOFOLLOW : 0;
    if (::statx(AT_FDCWD, location.c_str(), flags, STATX_TYPE | STATX_MNT_ID, &status) != 0)
        return std::nullopt;
    return Ground{status.stx_dev_major, status.stx_dev_minor, status.stx_mnt_id, S_ISDIR(status.stx_mode)};
}

bool isMissing(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

/// Ground of the entry itself or of its nearest existing ancestor, whose links are followed like in a path.
std::optional<Ground> groundUnder(const Location &location)
{
    Location place = standardised(location);
    auto ground = groundOf(place, Links::Keep);
    while (!ground && isMissing(errno) && place.has_relative_path()) {
        place = place.parent_path();
        ground = groundOf(place, Links::Follow);
    }
    return ground;
}

/// The existing folder, with links resolved, that `location` is or is in.
Result<Location> existingFolder(const Location &location)
{
    Location place = standardised(location);
    const auto ground = groundOf(place, Links::Keep);
    if (!ground && !isMissing(errno))
        return failure(Failure::lastSystem());
    if (!ground || !ground->folder)
        place = place.parent_path();
    std::error_code error;
    Location resolved = fs::canonical(place, error);
    while (error && isMissing(error.value()) && place.has_relative_path()) {
        place = place.parent_path();
        resolved = fs::canonical(place, error);
    }
    if (error)
        return failure(Failure::system(error.value()));
    return resolved;
}

/// The disk's label, "" if none: a symlink named after the label points to the device.
QString labelOf(const std::string &device)
{
    std::error_code error;
    const Location target = fs::canonical(device, error);
    if (error)
        return {};
    for (const fs::directory_entry &label : fs::directory_iterator("/dev/disk/by-label", error)) {
        std::error_code dangling;
        if (fs::canonical(label.path(), dangling) != target || dangling)
            continue;
        // Names in /dev encode a blank as "\x20".
        QByteArray name = QByteArray::fromStdString(label.path().filename().native());
        return QString::fromUtf8(QByteArray::fromPercentEncoding(name.replace("\\x", "%")));
    }
    return {};
}

} // namespace

Result<std::vector<Mount>> readMountTable()
{
    const QByteArray text = TRY(readWhole("/proc/self/mountinfo"));
    return parseMountTable({text.constData(), static_cast<std::size_t>(text.size())});
}

std::vector<Mount> currentMountTable()
{
    return readMountTable().value_or(std::vector<Mount>());
}

bool SystemVolumes::same(const Location &a, const Location &b) const
{
    const auto groundA = groundUnder(a);
    const auto groundB = groundUnder(b);
    return groundA && groundB && groundA->sameVolume(*groundB);
}

bool SystemVolumes::isLocal(const Location &location) const
{
    const std::vector<Mount> table = currentMountTable();
    const Mount *mount = mountHolding(table, standardised(location).native());
    return mount && !isNetworkFileSystem(mount->fileSystem);
}

Result<Location> SystemVolumes::top(const Location &location) const
{
    Location place = TRY(existingFolder(location));
    const auto ground = groundOf(place, Links::Keep);
    if (!ground)
        return failure(Failure::lastSystem());
    while (place.has_relative_path()) {
        const auto above = groundOf(place.parent_path(), Links::Keep);
        if (!above)
            return failure(Failure::lastSystem());
        if (!above->sameVolume(*ground))
            break;
        place = place.parent_path();
    }
    return place;
}

QString SystemVolumes::fileSystem(const Location &location) const
{
    std::error_code error;
    const Location real = std::filesystem::canonical(location, error);
    const std::vector<Mount> table = currentMountTable();
    const Mount *mount = mountHolding(table, error ? location.native() : real.native());
    return mount ? shown(std::string_view(mount->fileSystem)) : QString();
}

std::vector<Volume> SystemVolumes::mounted() const
{
    const std::vector<Mount> table = currentMountTable();
    std::vector<Volume> volumes = volumesIn(table);
    for (Volume &volume : volumes) {
        const Mount *mount = mountHolding(table, volume.root.native());
        if (const QString label = labelOf(mount->source); !label.isEmpty())
            volume.name = label;
    }
    return volumes;
}

Result<std::int64_t> SystemVolumes::available(const Location &location) const
{
    const Location folder = TRY(existingFolder(location));
    struct statvfs status{};
    if (::statvfs(folder.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    // Many network volumes do not report sizes: not to be mistaken for full.
    if (status.f_blocks == 0)
        return failure(Failure::system(ENOTSUP));
    return static_cast<std::int64_t>(status.f_bavail) * static_cast<std::int64_t>(status.f_frsize);
}

} // namespace brellin

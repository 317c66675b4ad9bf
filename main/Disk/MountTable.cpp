#include "Disk/MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <set>

namespace brellin {

namespace {

/// Decodes "\040" for blank, tab, newline and backslash.
std::string unescaped(std::string_view field)
{
    std::string text;
    for (std::size_t at = 0; at < field.size(); ++at) {
        int code = 0;
        const char *digits = field.data() + at + 1;
        if (field[at] == '\\' && at + 3 < field.size() &&
            std::from_chars(digits, digits + 3, code, 8).ptr == digits + 3) {
            text += static_cast<char>(code);
            at += 3;
        } else {
            text += field[at];
        }
    }
    return text;
}

std::vector<std::string_view> split(std::string_view text, char at)
{
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(at), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

bool isReadOnly(std::string_view options)
{
    const std::vector<std::string_view> words = split(options, ',');
    return std::ranges::find(words, "ro") != words.end();
}

/// "36 35 98:0 /root /point rw,noatime shared:1 … - ext3 /dev/sda1 rw": any number of fields between options and dash.
std::optional<Mount> parseLine(std::string_view line)
{
    const std::vector<std::string_view> fields = split(line, ' ');
    if (fields.size() < 9)
        return std::nullopt;
    const auto dash = std::find(fields.begin() + 6, fields.end(), std::string_view("-"));
    if (fields.end() - dash < 3)
        return std::nullopt;
    Mount mount{std::string(fields[2]), unescaped(fields[3]), unescaped(fields[4]),
                unescaped(dash[1]),     unescaped(dash[2]),   isReadOnly(fields[5])};
    if (fields.end() - dash > 3)
        mount.readOnly = mount.readOnly || isReadOnly(dash[3]);
    return mount;
}

/// Mount points of the system; users' volumes in /media, /run/media and /var/mnt are not among them.
bool isSystemPoint(std::string_view point)
{
    constexpr std::array<std::string_view, 12> system = {"/boot", "/dev", "/efi", "/etc", "/lib", "/proc",
                                                         "/snap", "/sys", "/tmp", "/usr", "/var", "/run"};
    if (isAtOrBelow(point, "/run/media") || isAtOrBelow(point, "/var/mnt"))
        return false;
    return std::ranges::any_of(system, [&](std::string_view folder) { return isAtOrBelow(point, folder); });
}

/// Whether this is a whole file system of a disk or server, or a btrfs subvolume.
bool holdsFiles(const Mount &mount)
{
    if (isNetworkFileSystem(mount.fileSystem))
        return mount.fileSystem != "autofs";
    const bool whole = mount.root == "/" || mount.fileSystem == "btrfs";
    return whole && (mount.source.starts_with("/dev/") || mount.fileSystem == "zfs");
}

} // namespace

std::vector<Mount> parseMountTable(std::string_view text)
{
    std::vector<Mount> table;
    for (const std::string_view line : split(text, '\n')) {
        if (auto mount = parseLine(line))
            table.push_back(*std::move(mount));
    }
    return table;
}

const Mount *mountHolding(const std::vector<Mount> &table, std::string_view path)
{
    const Mount *deepest = nullptr;
    for (const Mount &mount : table) {
        if (isAtOrBelow(path, mount.point) && (!deepest || mount.point.size() >= deepest->point.size()))
            deepest = &mount;
    }
    return deepest;
}

bool isNetworkFileSystem(std::string_view type)
{
    constexpr std::array<std::string_view, 21> network = {
        "nfs",  "nfs4", "cifs",   "smb3",   "smbfs",    "sshfs", "9p",    "afs",  "davfs",  "ceph",     "glusterfs",
        "coda", "gpfs", "beegfs", "lustre", "orangefs", "pvfs2", "ncpfs", "fuse", "autofs", "curlftpfs"};
    return type.starts_with("fuse.") || std::ranges::find(network, type) != network.end();
}

namespace {

/// The last component of the mount point; "Startvolume" for the root, which has none.
QString nameOf(const Location &point)
{
    return point == "/" ? QStringLiteral("Startvolume") : shownName(point);
}

} // namespace

std::vector<Volume> volumesIn(const std::vector<Mount> &table)
{
    std::vector<Volume> volumes;
    std::set<std::string_view> shownDevices;
    for (const Mount &mount : table) {
        const bool hidden = mountHolding(table, mount.point) != &mount;
        const bool isRoot = mount.point == "/";
        if (hidden || (!isRoot && (isSystemPoint(mount.point) || !holdsFiles(mount))))
            continue;
        if (!shownDevices.insert(mount.device).second)
            continue;
        volumes.push_back({mount.point, nameOf(mount.point), shown(std::string_view(mount.fileSystem)),
                           !isNetworkFileSystem(mount.fileSystem), mount.readOnly});
    }
    return volumes;
}

} // namespace brellin

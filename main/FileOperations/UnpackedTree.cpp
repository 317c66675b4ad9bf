#include "FileOperations/UnpackedTree.h"

#include "Disk/BytesAt.h"
#include "Disk/FreeName.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::size_t longestPath = 3000;
constexpr std::size_t deepestPath = 100;
constexpr std::uint32_t permissions = 0777;

/// Splits the path; none if it is absolute, contains "..", or is too long or too deep.
std::optional<std::vector<std::string>> partsOf(std::string_view path)
{
    if (path.empty() || path.starts_with('/') || path.size() > longestPath)
        return std::nullopt;
    std::vector<std::string> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        if (part == "..")
            return std::nullopt;
        if (!part.empty() && part != ".")
            parts.emplace_back(part);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts.size() > deepestPath ? std::nullopt : std::optional(std::move(parts));
}

/// Whether the link's target, as text, stays inside the tree; `depth` is that of the link's folder.
bool staysInside(std::size_t depth, std::string_view target)
{
    if (target.empty() || target.starts_with('/'))
        return false;
    for (const Location &part : Location(target)) {
        if (part == "..") {
            if (depth-- == 0)
                return false;
        } else if (part != "." && !part.empty()) {
            ++depth;
        }
    }
    return true;
}

timespec timeFrom(Instant instant)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(instant);
    return {static_cast<time_t>(seconds.time_since_epoch().count()), static_cast<long>((instant - seconds).count())};
}

Result<Descriptor> createFile(NameIn entry, std::uint32_t mode)
{
    // The umask applies; setuid, setgid and sticky bits are dropped.
    Descriptor file(::openat(entry.folder, entry.name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                             (mode & permissions) | S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        return failure(Failure::lastSystem());
    return file;
}

/// FAT and exFAT drivers in the kernel and in FUSE return different errors.
bool tellsOfAVolumeWithoutLinks(int error)
{
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK;
}

/// Whether the failure concerns only this entry, so that unpacking can continue.
bool concernsNameOnly(const Failure &why)
{
    return why.is(std::errc::filename_too_long) || why.is(std::errc::not_a_directory) ||
           why.is(std::errc::file_exists) || why.is(std::errc::invalid_argument) ||
           why.is(std::errc::illegal_byte_sequence) || why.is(std::errc::no_such_file_or_directory) ||
           why.is(std::errc::too_many_symbolic_link_levels);
}

} // namespace

UnpackedTree::UnpackedTree(Location folder, Descriptor top, MayWrite mayWrite)
    : m_folder(std::move(folder))
    , m_top(std::move(top))
    , m_mayWrite(std::move(mayWrite))
{
}

Result<UnpackedTree> UnpackedTree::in(const Location &folder, MayWrite mayWrite)
{
    Descriptor top = TRY(openFolderPlace(folder));
    return UnpackedTree(folder, std::move(top), std::move(mayWrite));
}

void UnpackedTree::refuse(const ArchivedEntry &entry, const QString &why)
{
    constexpr qsizetype mostNamed = 50;
    if (m_refused.size() < mostNamed)
        m_refused << shown(std::string_view(entry.path)).left(200) + QStringLiteral(": ") + why;
    else if (m_refused.size() == mostNamed)
        m_refused << QStringLiteral("… und weitere");
}

/// Opens the folder at a path, creating missing ones; never follows links.
Result<Descriptor> UnpackedTree::folderAt(const Path &path, std::uint32_t lastMode) const
{
    Descriptor folder = TRY(openFolderPlace(NameIn{m_top.number(), "."}));
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::uint32_t mode = i + 1 == path.size() ? (lastMode & permissions) | S_IRWXU : permissions;
        if (::mkdirat(folder.number(), path[i].c_str(), mode) != 0 && errno != EEXIST)
            return failure(Failure::lastSystem());
        folder = TRY(openFolderPlace(NameIn{folder.number(), path[i].c_str()}));
    }
    return folder;
}

Result<UnpackedTree::EntryPlace> UnpackedTree::placeFor(const Path &path) const
{
    return EntryPlace{TRY(folderAt({path.begin(), path.end() - 1}, permissions)), path.back()};
}

Result<void> UnpackedTree::add(const ArchivedEntry &entry, ArchiveReader &reader)
{
    const std::optional<Path> path = partsOf(entry.path);
    if (!path) {
        refuse(entry, QStringLiteral("führt aus dem Ordner hinaus oder ist zu lang"));
        return {};
    }
    if (path->empty())
        return {}; // the top folder itself
    Result<void> added;
    switch (entry.kind) {
    case ArchivedEntry::Kind::File:
        added = addFile(*path, entry, reader);
        break;
    case ArchivedEntry::Kind::Folder:
        added = addFolder(*path, entry);
        break;
    case ArchivedEntry::Kind::HardLink:
        added = addHardLink(*path, entry);
        break;
    case ArchivedEntry::Kind::Link:
        m_links.push_back({*path, entry.target});
        break;
    case ArchivedEntry::Kind::Special:
        refuse(entry, QStringLiteral("ist ein Gerät oder etwas Ähnliches"));
        break;
    }
    if (!added && concernsNameOnly(added.error())) {
        refuse(entry, added.error().message);
        return {};
    }
    return added;
}

Result<void> UnpackedTree::addFile(const Path &path, const ArchivedEntry &entry, ArchiveReader &reader)
{
    const EntryPlace place = TRY(placeFor(path));
    // An archive may contain a name twice: keep both, numbered.
    std::string name = place.name;
    Result<Descriptor> file = createFile(place.at(), entry.mode);
    for (int number = 2; !file && file.error().is(std::errc::file_exists) && number < 1000; ++number) {
        name = numberedName(place.name, number);
        file = createFile({place.folder.number(), name.c_str()}, entry.mode);
    }
    if (!file)
        return failure(file.error());
    std::int64_t length = 0;
    const auto write = [&](const char *bytes, std::size_t size, std::int64_t at) -> Result<void> {
        TRY(m_mayWrite(static_cast<std::int64_t>(size)));
        length = std::max(length, at + static_cast<std::int64_t>(size));
        return writeAt(file->number(), bytes, size, at);
    };
    if (TRY(reader.content(write)) == ArchiveReader::Content::Spoilt) {
        if (::unlinkat(place.folder.number(), name.c_str(), 0) != 0)
            return failure(Failure::lastSystem());
        refuse(entry, QStringLiteral("ist im Archiv beschädigt (die Prüfsumme stimmt nicht)"));
        return {};
    }
    // Extend the file if it ends in a hole.
    if (entry.size && *entry.size > length && ::ftruncate(file->number(), *entry.size) != 0)
        return failure(Failure::lastSystem());
    if (entry.modified) {
        const std::array times{timeFrom(*entry.modified), timeFrom(*entry.modified)};
        ::futimens(file->number(), times.data());
    }
    return file->close();
}

Result<void> UnpackedTree::addFolder(const Path &path, const ArchivedEntry &entry)
{
    TRY(folderAt(path, entry.mode));
    if (entry.modified) {
        Location place = m_folder;
        for (const std::string &part : path)
            place /= part;
        m_folderTimes.emplace_back(place, *entry.modified);
    }
    return {};
}

Result<void> UnpackedTree::addHardLink(const Path &path, const ArchivedEntry &entry)
{
    const std::optional<Path> target = partsOf(entry.target);
    if (!target || target->empty()) {
        refuse(entry, QStringLiteral("verweist aus dem Ordner hinaus"));
        return {};
    }
    const EntryPlace from = TRY(placeFor(*target));
    const EntryPlace to = TRY(placeFor(path));
    if (::linkat(from.folder.number(), from.name.c_str(), to.folder.number(), to.name.c_str(), 0) == 0)
        return {};
    if (!tellsOfAVolumeWithoutLinks(errno))
        return failure(Failure::lastSystem());
    TRY(copyInto(to, from));
    ++m_separated;
    return {};
}

/// Copies a file within the tree with its permissions and times.
Result<void> UnpackedTree::copyInto(const EntryPlace &to, const EntryPlace &from)
{
    const Descriptor source = TRY(openForReading(from.at()));
    struct stat status{};
    if (::fstat(source.number(), &status) != 0)
        return failure(Failure::lastSystem());
    Descriptor copy = TRY(createFile(to.at(), status.st_mode));
    std::vector<char> piece(static_cast<std::size_t>(256) * 1024);
    for (std::int64_t at = 0;;) {
        const std::size_t length = TRY(readAt(source.number(), piece.data(), piece.size(), at));
        if (length == 0)
            break;
        TRY(m_mayWrite(static_cast<std::int64_t>(length)));
        TRY(writeAt(copy.number(), piece.data(), length, at));
        at += static_cast<std::int64_t>(length);
    }
    const std::array times{status.st_atim, status.st_mtim};
    ::futimens(copy.number(), times.data());
    return copy.close();
}

void UnpackedTree::makeLink(const Link &link)
{
    const ArchivedEntry named{ArchivedEntry::Kind::Link, Location(link.path.back()).native(), {}, 0, {}, {}};
    if (!staysInside(link.path.size() - 1, link.target)) {
        refuse(named, QStringLiteral("verweist aus dem Ordner hinaus"));
        return;
    }
    const Result<EntryPlace> place = placeFor(link.path);
    if (!place)
        refuse(named, place.error().message);
    else if (::symlinkat(link.target.c_str(), place->folder.number(), place->name.c_str()) != 0)
        refuse(named, Failure::lastSystem().message);
}

bool UnpackedTree::leadsOutside(const Link &link) const
{
    Location folder = m_folder;
    for (std::size_t i = 0; i + 1 < link.path.size(); ++i)
        folder /= link.path[i];
    std::error_code error;
    const Location top = std::filesystem::canonical(m_folder, error);
    // Resolve the target text instead of the link, since links to missing targets count as well.
    const Location target = std::filesystem::weakly_canonical(folder / link.target, error);
    return error || !isAtOrBelow(standardised(target), top);
}

/// A link that stays inside by its text may still lead out through another link.
void UnpackedTree::removeLinksThatLeadOutside()
{
    for (const Link &link : m_links) {
        const Result<EntryPlace> place = leadsOutside(link) ? placeFor(link.path) : failure(QString());
        struct stat status{};
        const bool isLink = place &&
                            ::fstatat(place->folder.number(), place->name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                            S_ISLNK(status.st_mode);
        if (isLink && ::unlinkat(place->folder.number(), place->name.c_str(), 0) == 0)
            m_refused << shown(std::string_view(link.path.back())) + QStringLiteral(": verweist aus dem Ordner hinaus");
    }
}

Result<void> UnpackedTree::finish()
{
    for (const Link &link : m_links)
        makeLink(link);
    removeLinksThatLeadOutside();
    // Inner folders first: setting times inside a folder changes the folder's own.
    for (auto folder = m_folderTimes.rbegin(); folder != m_folderTimes.rend(); ++folder) {
        const std::array times{timeFrom(folder->second), timeFrom(folder->second)};
        ::utimensat(AT_FDCWD, folder->first.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
    }
    return {};
}

} // namespace brellin

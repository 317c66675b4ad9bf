#include "Disk/Linux/SystemTrashFolder.h"

#include "Disk/FreeName.h"
#include "Disk/Rename.h"
#include "Disk/TrashInfo.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr std::string_view recordEnd = ".trashinfo";

std::string recordName(const std::string &name)
{
    return name + std::string(recordEnd);
}

Result<void> createIfMissing(NameIn folder)
{
    if (::mkdirat(folder.folder, folder.name, S_IRWXU) != 0 && errno != EEXIST)
        return failure(Failure::lastSystem());
    return {};
}

/// Also creates parent folders: a new account has no data folder yet.
Result<void> createFolders(const Location &folder)
{
    Location above;
    for (const Location &part : folder) {
        above /= part;
        if (!entryExists(above))
            TRY(createIfMissing({AT_FDCWD, above.c_str()}));
    }
    return {};
}

enum class Genuine { OwnFolder, StickyFolder };

/// Opens a folder of a Trash on a volume, where others may have created it.
Result<Descriptor> openGenuine(NameIn entry, Genuine what, Missing missing)
{
    if (missing == Missing::Create && what == Genuine::OwnFolder)
        TRY(createIfMissing(entry));
    Descriptor folder = TRY(openFolderPlace(entry));
    const struct stat status = TRY(statusOf({folder.number(), "."}));
    const bool genuine = what == Genuine::StickyFolder ? (status.st_mode & S_ISVTX) != 0 : status.st_uid == ::geteuid();
    if (!genuine)
        return failure(Failure::system(EACCES));
    return folder;
}

/// Opens the folder that contains "files" and "info".
Result<Descriptor> openBase(const TrashPlace &place, Missing missing)
{
    if (place.kind == TrashPlace::Kind::Home) {
        if (missing == Missing::Create)
            TRY(createFolders(place.folder));
        return openFolderPlace(place.folder);
    }
    Descriptor above = TRY(openFolderPlace(place.top));
    if (place.kind == TrashPlace::Kind::Shared)
        above = TRY(openGenuine({above.number(), ".Trash"}, Genuine::StickyFolder, missing));
    return openGenuine({above.number(), place.folder.filename().c_str()}, Genuine::OwnFolder, missing);
}

bool writable(const Location &folder)
{
    return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

/// Whether missing folders can be created. Existing ones must be valid.
bool canBeCompleted(const TrashPlace &place)
{
    const auto base = openBase(place, Missing::Fail);
    if (!base || !writable(place.folder))
        return false;
    return std::ranges::all_of(std::array{"files", "info"}, [&](const char *name) {
        const NameIn part{base->number(), name};
        if (!statusOf(part))
            return true;
        return place.kind == TrashPlace::Kind::Home ? openFolderPlace(place.folder / name).has_value()
                                                    : openGenuine(part, Genuine::OwnFolder, Missing::Fail).has_value();
    });
}

Result<void> writeAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return failure(Failure::lastSystem());
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return {};
}

} // namespace

TrashPlace TrashPlace::shared(const Location &top)
{
    return {Kind::Shared, top / ".Trash" / std::to_string(::geteuid()), top};
}

TrashPlace TrashPlace::own(const Location &top)
{
    return {Kind::Own, top / (".Trash-" + std::to_string(::geteuid())), top};
}

Result<TrashFolder> TrashFolder::open(const TrashPlace &place, Missing missing)
{
    const Descriptor base = TRY(openBase(place, missing));
    TrashFolder folder;
    if (place.kind == TrashPlace::Kind::Home) {
        if (missing == Missing::Create) {
            TRY(createIfMissing({base.number(), "files"}));
            TRY(createIfMissing({base.number(), "info"}));
        }
        // Follow links in the home Trash, since only the user can create them.
        folder.m_files = TRY(openFolderPlace(place.folder / "files"));
        folder.m_info = TRY(openFolderPlace(place.folder / "info"));
        return folder;
    }
    folder.m_files = TRY(openGenuine({base.number(), "files"}, Genuine::OwnFolder, missing));
    folder.m_info = TRY(openGenuine({base.number(), "info"}, Genuine::OwnFolder, missing));
    return folder;
}

bool TrashFolder::usable(const TrashPlace &place)
{
    if (open(place, Missing::Fail))
        return writable(place.folder / "files") && writable(place.folder / "info");
    if (entryExists(place.folder))
        return canBeCompleted(place);
    if (place.kind == TrashPlace::Kind::Shared &&
        !openGenuine({AT_FDCWD, (place.top / ".Trash").c_str()}, Genuine::StickyFolder, Missing::Fail))
        return false;
    Location above = place.folder.parent_path();
    while (!entryExists(above) && above.has_relative_path())
        above = above.parent_path();
    return writable(above);
}

Result<TrashFolder::Record> TrashFolder::reserve(std::string_view wanted) const
{
    const long longest = ::fpathconf(m_info.number(), _PC_NAME_MAX);
    const std::size_t limit =
        static_cast<std::size_t>(longest > 64 ? std::min(longest, 255L) : 255L) - recordEnd.size();
    std::string name = fittingName(wanted, limit);
    for (int number = 2;; ++number) {
        // Also skip names of entries without a record, left by other programs.
        if (!statusOf({m_files.number(), name.c_str()})) {
            const int file = ::openat(m_info.number(), recordName(name).c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
            if (file >= 0)
                return Record{name, Descriptor(file)};
            if (errno != EEXIST)
                return failure(Failure::lastSystem());
        }
        // Choose random numbers after a few attempts, since thousands of equal names ("index.html") would make counting
        // slow.
        constexpr int inOrder = 12;
        const int next = number <= inOrder ? number : QRandomGenerator::global()->bounded(inOrder, 100'000'000);
        name = numberedName(wanted, next, limit);
    }
}

/// Flushes the record before the entry is moved, so that a trashed entry has its origin even after a power cut.
Result<void> TrashFolder::fill(const Record &record, NameIn entry, std::string_view origin) const
{
    TRY(writeAll(record.file.number(), trashInfoText(origin, QDateTime::currentDateTime())));
    if (::fdatasync(record.file.number()) != 0)
        return failure(Failure::lastSystem());
    return renameToReserved(entry, {m_files.number(), record.name.c_str()});
}

Result<std::string> TrashFolder::take(NameIn entry, std::string_view origin) const
{
    for (;;) {
        Record record = TRY(reserve(entry.name));
        const auto moved = fill(record, entry, origin);
        if (moved)
            return std::move(record.name);
        ::unlinkat(m_info.number(), recordName(record.name).c_str(), 0);
        if (!moved.error().is(std::errc::file_exists))
            return failure(moved.error());
    }
}

Result<void> TrashFolder::give(const std::string &name, NameIn destination) const
{
    TRY(renameExclusively({m_files.number(), name.c_str()}, destination));
    // If removing fails, an orphaned record remains, which is ignored.
    ::unlinkat(m_info.number(), recordName(name).c_str(), 0);
    return {};
}

std::optional<std::string> TrashFolder::originOf(const std::string &name) const
{
    const std::optional<std::string> record = recordOf(name);
    return record ? originInTrashInfo(*record) : std::nullopt;
}

std::optional<std::string> TrashFolder::recordOf(const std::string &name) const
{
    const auto file = openForReading({m_info.number(), recordName(name).c_str()});
    struct stat status{};
    if (!file || ::fstat(file->number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    // A path has at most 4096 bytes, each encoded as up to three.
    std::array<char, 16384> text{};
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t got = ::read(file->number(), text.data() + size, text.size() - size);
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    return std::string(text.data(), size);
}

std::vector<std::string> TrashFolder::names() const
{
    std::vector<std::string> names;
    const auto folder = openFolder({m_files.number(), "."});
    if (!folder)
        return names;
    auto listed = listFolder(folder->number());
    if (!listed)
        return names;
    for (ListedName &entry : *listed)
        names.push_back(std::move(entry.name));
    return names;
}

std::vector<std::string> TrashFolder::namesOf(const FileIdentity &identity) const
{
    std::vector<std::string> found = names();
    std::erase_if(found, [&](const std::string &name) {
        const auto status = statusOf({m_files.number(), name.c_str()});
        return !status || status->st_dev != identity.device || status->st_ino != identity.inode;
    });
    return found;
}

} // namespace brellin

#include "Disk/HiddenFolder.h"

#include "Disk/FileAttributes.h"
#include "Disk/FreeName.h"
#include "Disk/NameReserve.h"
#include "Disk/Walk.h"
#include "System/ReadWhole.h"

#include <QSysInfo>
#include <QUuid>

#include <algorithm>
#include <fstream>
#include <utility>

#include <unistd.h>

namespace brellin {

namespace {

constexpr const char *lockName = "sperre";
constexpr const char *contentName = "inhalt";
/// File with the name of a possible placeholder.
constexpr const char *reserveName = "name";
constexpr std::int64_t longestName = 255;

/// Minimum age of folders whose owner is unknown.
constexpr std::chrono::hours foreignPatience{24};

void nameThisMachine(const FileLock &lock)
{
    const QByteArray machine = QSysInfo::machineUniqueId();
    // If the ID cannot be written, the lock alone has to do.
    [[maybe_unused]] const ssize_t written =
        ::write(lock.descriptor(), machine.constData(), static_cast<std::size_t>(machine.size()));
}

bool isOfThisMachine(const Location &lockFile)
{
    const Result<QByteArray> machine = readWhole(lockFile);
    return machine && (machine->isEmpty() || *machine == QSysInfo::machineUniqueId());
}

bool holdsSomething(const Location &folder)
{
    std::error_code error;
    return !std::filesystem::is_empty(folder, error) && !error;
}

enum class Owner { Dead, Living, Unknown };

/// Without a lock file the folder may just be being created: Unknown.
Owner ownerOf(const Location &folder)
{
    const Location lockFile = folder / lockName;
    if (!entryExists(lockFile))
        return Owner::Unknown;
    const Result<FileLock> lock = FileLock::tryNow(lockFile);
    if (!lock)
        return lock.error().is(std::errc::resource_unavailable_try_again) ? Owner::Living : Owner::Unknown;
    return isOfThisMachine(lockFile) ? Owner::Dead : Owner::Unknown;
}

bool isOld(const Location &folder, Instant now)
{
    const Result<FileAttributes> attributes = readAttributes(folder);
    return attributes && now - std::max(attributes->modified, attributes->created.value_or(now)) > foreignPatience;
}

std::vector<Location> foldersNamed(const Location &parent, std::initializer_list<std::string_view> prefixes)
{
    std::vector<Location> found;
    const Result<WalkOutcome> walked = walk(parent, {.subfolders = false}, [&](const WalkEntry &entry) {
        if (entry.attributes.isFolder() &&
            std::ranges::any_of(prefixes, [&](std::string_view prefix) { return entry.name.starts_with(prefix); }))
            found.push_back(entry.location());
        return WalkStep::Continue;
    });
    return walked ? found : std::vector<Location>();
}

void removeAbandoned(const Location &parent, std::string_view prefix, FileActions &files)
{
    for (const Location &folder : foldersNamed(parent, {prefix})) {
        // Folders that cannot be removed are tried again next time. Those with a placeholder are offered to the user
        // together with it.
        if (ownerOf(folder) == Owner::Dead && !reservedFor(folder))
            static_cast<void>(files.removeOwnCopy(folder));
    }
}

} // namespace

HiddenFolder::HiddenFolder(Location location, FileLock lock, HiddenNote note, FileActions &files)
    : m_location(std::move(location))
    , m_lock(std::move(lock))
    , m_note(std::move(note))
    , m_files(&files)
{
}

HiddenFolder::HiddenFolder(HiddenFolder &&other) noexcept
    : m_location(std::move(other.m_location))
    , m_lock(std::move(other.m_lock))
    , m_note(std::move(other.m_note))
    , m_files(std::exchange(other.m_files, nullptr))
{
}

HiddenFolder::~HiddenFolder()
{
    if (m_files)
        static_cast<void>(remove());
}

std::optional<QString> HiddenFolder::remove()
{
    FileActions &files = *std::exchange(m_files, nullptr);
    // Remove the content while locked, since that may take long. Then release the lock before removing its file:
    // removing an open file on FUSE leaves another one behind.
    static_cast<void>(files.removeOwnCopy(location()));
    m_lock.release();
    const Result<void> removed = files.removeOwnCopy(m_location);
    if (removed) {
        m_note.discard();
        return std::nullopt;
    }
    return QStringLiteral("Der versteckte Ordner „%1“ ließ sich nicht entfernen: %2")
        .arg(shownName(m_location), removed.error().message);
}

Location HiddenFolder::location() const
{
    return m_location / contentName;
}

/// If this fails, only the placeholder will not be found after a crash.
void HiddenFolder::noteReserve(const Location &name) const
{
    std::ofstream(m_location / reserveName, std::ios::binary | std::ios::trunc) << name.native();
}

Result<Location> HiddenFolder::moveOut(const Location &from, const Location &wanted) const
{
    const bool reserves = from != location() && m_files->reservesNames(wanted.parent_path());
    // Limits retries when other programs keep taking the free name first.
    constexpr int mostAttempts = 100;
    for (int attempt = 1;; ++attempt) {
        Location free = unique(wanted);
        if (reserves)
            noteReserve(free.filename());
        const Result<void> renamed = m_files->rename(from, free);
        if (renamed)
            return free;
        if (!renamed.error().is(std::errc::file_exists) || attempt == mostAttempts)
            return failure(renamed.error());
    }
}

Result<HiddenFolder> HiddenFolder::create(const Location &parent, std::string_view prefix, FileActions &files,
                                          const Location &notes)
{
    removeAbandoned(parent, prefix, files);
    const QString token = QUuid::createUuid().toString(QUuid::WithoutBraces).left(8);
    const Location folder = parent / (std::string(prefix) + token.toStdString());
    HiddenNote note(folder, notes);
    if (const Result<void> created = files.createFolder(folder); !created) {
        note.discard();
        return failure(created.error());
    }
    // On volumes without locks the folder stays unlocked and never counts as abandoned by a dead process.
    Result<FileLock> lock = FileLock::tryNow(folder / lockName);
    if (lock)
        nameThisMachine(*lock);
    HiddenFolder made(folder, lock ? *std::move(lock) : FileLock(), std::move(note), files);
    TRY(files.createFolder(made.location()));
    return made;
}

std::vector<Location> abandonedHiddenFolders(const Location &folder, Instant now)
{
    std::vector<Location> folders = foldersNamed(folder, {packingPrefix, unpackingPrefix});
    std::erase_if(folders, [&](const Location &one) {
        const Owner owner = ownerOf(one);
        return owner == Owner::Living || (owner == Owner::Unknown && !isOld(one, now));
    });
    return folders;
}

std::optional<Location> reservedFor(const Location &hiddenFolder)
{
    const Location note = hiddenFolder / reserveName;
    const Result<FileAttributes> noted = readAttributes(note);
    const bool waits = holdsSomething(hiddenFolder / contentName);
    if (!waits || !noted || !noted->isFile() || noted->size > longestName)
        return std::nullopt;
    const Result<QByteArray> name = readWhole(note);
    if (!name || name->isEmpty() || name->contains('/'))
        return std::nullopt;
    const Location place = hiddenFolder.parent_path() / name->toStdString();
    const Result<FileAttributes> found = readAttributes(place);
    const bool ours = found && mayBeReserve(*found, noted->modified, ReserveCreated::RightAfterNote);
    return ours ? std::optional(place) : std::nullopt;
}

} // namespace brellin

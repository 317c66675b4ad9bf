#include "FileOperations/HiddenFolder.h"

#include "Disk/FileAttributes.h"
#include "Disk/FreeName.h"
#include "Disk/Walk.h"

#include <QUuid>

#include <utility>
#include <vector>

namespace brellin {

namespace {

constexpr const char *lockName = "sperre";
constexpr const char *contentName = "inhalt";

/// One without a lock is still being made.
bool isAbandoned(const Location &folder)
{
    return entryExists(folder / lockName) && FileLock::tryNow(folder / lockName).has_value();
}

void removeAbandoned(const Location &parent, std::string_view prefix, FileActions &files)
{
    std::vector<Location> found;
    const Result<WalkOutcome> walked = walk(parent, {.subfolders = false}, [&](const WalkEntry &entry) {
        if (entry.attributes.isFolder() && entry.name.starts_with(prefix))
            found.push_back(entry.location());
        return WalkStep::Continue;
    });
    if (!walked)
        return;
    for (const Location &folder : found) {
        // What cannot go now goes another day.
        if (isAbandoned(folder))
            static_cast<void>(files.removeOwnCopy(folder));
    }
}

} // namespace

HiddenFolder::HiddenFolder(Location location, FileLock lock, FileActions &files)
    : m_location(std::move(location))
    , m_lock(std::move(lock))
    , m_files(&files)
{
}

HiddenFolder::HiddenFolder(HiddenFolder &&other) noexcept
    : m_location(std::move(other.m_location))
    , m_lock(std::move(other.m_lock))
    , m_files(std::exchange(other.m_files, nullptr))
{
}

HiddenFolder::~HiddenFolder()
{
    if (m_files)
        static_cast<void>(m_files->removeOwnCopy(m_location));
}

Location HiddenFolder::location() const
{
    return m_location / contentName;
}

Result<HiddenFolder> HiddenFolder::create(const Location &parent, std::string_view prefix, FileActions &files)
{
    removeAbandoned(parent, prefix, files);
    const QString token = QUuid::createUuid().toString(QUuid::WithoutBraces).left(8);
    const Location folder = parent / (std::string(prefix) + token.toStdString());
    TRY(files.createFolder(folder));
    // Volumes that know no locks do without: there nothing is taken for abandoned.
    Result<FileLock> lock = FileLock::tryNow(folder / lockName);
    HiddenFolder made(folder, lock ? *std::move(lock) : FileLock(), files);
    TRY(files.createFolder(made.location()));
    return made;
}

Result<Location> renameToFree(const Location &from, const Location &wanted, FileActions &files)
{
    // Somebody may take each free name just before us, but not for ever.
    constexpr int mostAttempts = 100;
    for (int attempt = 1;; ++attempt) {
        const Location free = unique(wanted);
        const Result<void> renamed = files.rename(from, free);
        if (renamed)
            return free;
        if (!renamed.error().is(std::errc::file_exists) || attempt == mostAttempts)
            return failure(renamed.error());
    }
}

} // namespace brellin

#include "FileOperations/RenameLog.h"

#include "Base/German.h"
#include "Base/Json.h"
#include "Disk/EntryPlace.h"
#include "Disk/FreeName.h"
#include "Disk/NameReserve.h"
#include "FileOperations/OperationOutcome.h"
#include "FileOperations/RenameState.h"
#include "System/PrivateFolders.h"

#include <QUuid>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace brellin {

template <>
struct JsonTable<LoggedRename> {
    static constexpr std::tuple fields{
        field("from", &LoggedRename::from),           field("to", &LoggedRename::to),
        field("temporary", &LoggedRename::temporary), field("device", &LoggedRename::device),
        field("inode", &LoggedRename::inode),         field("lasting", &LoggedRename::lasting),
        field("folder", &LoggedRename::folder),       field("size", &LoggedRename::size),
        field("modified", &LoggedRename::modified)};
};

namespace {

constexpr std::string_view logEnd = ".json";
/// Length of e.g. "1a2b3c4d-".
constexpr std::size_t tokenLength = 9;
constexpr auto orphanAge = std::chrono::hours(1);

Result<void> writeFlushed(const FileLock &lock, const Location &file, const QByteArray &text)
{
    for (qsizetype at = 0; at < text.size();) {
        const ssize_t written =
            ::write(lock.descriptor(), text.constData() + at, static_cast<std::size_t>(text.size() - at));
        if (written < 0 && errno != EINTR)
            return failure(Failure::lastSystem());
        at += std::max<ssize_t>(written, 0);
    }
    // Flush the folder entry too: after a power cut nobody could restore temporary names without the log.
    return flushEntry(file);
}

std::vector<std::string> namesIn(const Location &folder)
{
    std::vector<std::string> names;
    const Result<Descriptor> open = openFolderPlace(folder);
    const Result<Descriptor> readable = open ? openFolder({open->number(), "."}) : failure(open.error());
    const Result<std::vector<ListedName>> listed =
        readable ? listFolder(readable->number()) : failure(readable.error());
    if (listed)
        std::ranges::transform(*listed, std::back_inserter(names), &ListedName::name);
    return names;
}

/// A log found on disk.
struct FoundLog {
    Location file;
    FileLock lock; ///< not held if its batch is running
    std::vector<LoggedRename> renames;
    std::optional<QString> damage = {}; ///< why the renames cannot be read

    bool lives() const { return !lock.held(); }
};

/// An empty log was never written, so its batch has not started.
void readRenames(FoundLog &log)
{
    const Result<QByteArray> text = readLog(log.file);
    if (!text) {
        log.damage = text.error().message;
    } else if (!text->isEmpty()) {
        if (JsonResult<std::vector<LoggedRename>> renames = fromJsonText<std::vector<LoggedRename>>(*text))
            log.renames = *std::move(renames);
        else
            log.damage = renames.error().sentence();
    }
}

std::vector<FoundLog> foundLogs(const Location &folder)
{
    std::vector<FoundLog> found;
    for (const std::string &name : namesIn(folder)) {
        if (!name.ends_with(logEnd))
            continue;
        FoundLog log{folder / name, {}, {}};
        if (Result<FileLock> lock = FileLock::tryNow(log.file))
            log.lock = *std::move(lock);
        readRenames(log);
        found.push_back(std::move(log));
    }
    return found;
}

/// Whether no entry has a temporary name. If none of its entries is found at all, the volume may be unmounted: not
/// settled.
bool isSettled(const FoundLog &log)
{
    if (log.damage)
        return false;
    const bool waits = std::ranges::any_of(log.renames, entryExists, &LoggedRename::temporary);
    const bool isSeen = std::ranges::any_of(
        log.renames, [](const LoggedRename &one) { return entryExists(one.from) || entryExists(one.to); });
    return log.renames.empty() || (!waits && isSeen);
}

bool concerns(const FoundLog &log, const Location &folder)
{
    return std::ranges::any_of(log.renames, [&](const LoggedRename &one) {
        return one.temporary.parent_path() == folder && entryExists(one.temporary);
    });
}

bool isOldOrphan(const Location &entry, Instant now)
{
    const Result<struct stat> status = statusOf({AT_FDCWD, entry.c_str()});
    return status && now - instantFrom(status->st_ctim) > orphanAge;
}

/// Old entries with temporary names in `folder` that no log mentions.
CutShortRename orphansIn(const Location &folder, const std::set<std::string> &logged, Instant now)
{
    CutShortRename orphans;
    for (const std::string &name : namesIn(folder)) {
        const Location entry = folder / name;
        if (!name.starts_with(renamePrefix) || logged.contains(entry.native()) || !isOldOrphan(entry, now))
            continue;
        const Location old = folder / nameInTemporary(name);
        orphans.renames.push_back({old, old, entry});
    }
    return orphans;
}

/// Renames to the old name; if taken, to the new or a free one. Returns the location.
Result<Location> restoreOne(const LoggedRename &one, FileActions &files)
{
    constexpr int mostAttempts = 100;
    Location place = one.from;
    Result<void> moved = files.rename(one.temporary, place);
    const auto taken = [&] { return !moved && moved.error().is(std::errc::file_exists); };
    if (taken() && one.to != one.from)
        moved = files.rename(one.temporary, place = one.to);
    for (int attempt = 0; attempt < mostAttempts && taken(); ++attempt)
        moved = files.rename(one.temporary, place = unique(one.from));
    return moved ? Result<Location>(place) : failure(moved.error());
}

/// Restores a batch from last to first, so that an interrupted restore leaves a state that the next one can read.
class Restoring {
public:
    Restoring(const CutShortRename &batch, FileActions &files)
        : m_batch(batch)
        , m_files(files)
        , m_state(RenameState::of(batch))
    {
    }

    EntryFailures run()
    {
        for (const Location &name : m_state.surplus) {
            if (const Result<void> removed = m_files.removeOwnCopy(name); !removed)
                m_failures << EntryFailure{name, removed.error()};
        }
        const std::size_t count = m_batch.renames.size();
        for (std::size_t i = count; i-- > 0;)
            makeRoom(i);
        for (std::size_t i = count; i-- > 0;) {
            if (m_state.waits(i))
                restore(m_batch.renames[i]);
        }
        return std::move(m_failures);
    }
    /// Whether every entry has its old name, or a reported one.
    bool settled() const { return m_settled && m_state.certain(); }

private:
    /// Renames an entry with its new name back to its temporary one, so that names can be swapped.
    void makeRoom(std::size_t i)
    {
        const LoggedRename &one = m_batch.renames[i];
        RenameState::At &at = m_state.entries[i];
        if (at == RenameState::At::Unknown)
            m_failures << EntryFailure{
                entryExists(one.to) ? one.to : one.from,
                {QStringLiteral("Ob das „%1“ ist, ließ sich nicht sicher feststellen; der Name bleibt.")
                     .arg(shownName(one.from)),
                 {}}};
        if (at != RenameState::At::New || one.to == one.from)
            return;
        if (const Result<void> moved = m_files.rename(one.to, one.temporary)) {
            at = RenameState::At::Temporary;
        } else {
            m_settled = false;
            m_failures << EntryFailure{one.to, moved.error()};
        }
    }

    void restore(const LoggedRename &one)
    {
        const Result<Location> place = restoreOne(one, m_files);
        if (!place) {
            m_settled = false;
            m_failures << EntryFailure{one.from, place.error()};
        } else if (*place != one.from) {
            m_failures << EntryFailure{
                one.from,
                {QStringLiteral("Heißt jetzt „%1“, denn der alte Name ist vergeben.").arg(shownName(*place)), {}}};
        }
    }

    const CutShortRename &m_batch;
    FileActions &m_files;
    RenameState m_state;
    EntryFailures m_failures;
    bool m_settled = true;
};

/// Keeps the log of an unclear batch under another name, unless entries still have temporary names.
void putAside(const CutShortRename &batch)
{
    if (std::ranges::none_of(batch.renames, entryExists, &LoggedRename::temporary))
        ::rename(batch.log.c_str(), (batch.log.native() + ".ungeklärt").c_str());
}

} // namespace

bool LoggedRename::isAt(const Location &location) const
{
    const Result<FileAttributes> found = readAttributes(location);
    if (!found)
        return false;
    const auto apart = found->modified - Instant(std::chrono::nanoseconds(modified));
    const bool alike =
        found->isFolder() == folder && (folder || found->size == size) && std::chrono::abs(apart) <= coarseTime;
    if (!lasting)
        return alike;
    // A remounted volume may have another device number.
    return static_cast<std::int64_t>(found->identity.inode) == inode &&
           (alike || static_cast<std::int64_t>(found->identity.device) == device);
}

Result<RenameLog> RenameLog::create(const Location &folder, const std::vector<LoggedRename> &renames)
{
    const QByteArray text = jsonText(toJson(renames));
    if (text.size() > longestLog)
        return failure(tooLarge(longestLog));
    TRY(createPrivateFolders(folder));
    const Location file =
        folder / (QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString() + std::string(logEnd));
    FileLock lock = TRY(FileLock::tryNow(file));
    if (const Result<void> written = writeFlushed(lock, file, text); !written) {
        ::unlink(file.c_str());
        return failure(written.error());
    }
    return RenameLog(file, std::move(lock));
}

void RenameLog::remove()
{
    ::unlink(m_file.c_str());
    m_lock.release();
}

QString CutShortRename::question() const
{
    return QStringLiteral("Ein Umbenennen wurde unterbrochen. %1 in diesem Ordner noch ohne richtigen Namen. "
                          "Die alten Namen wiederherstellen?")
        .arg(counted(static_cast<qint64>(renames.size()), QStringLiteral("Element ist"),
                     QStringLiteral("Elemente sind")));
}

std::string temporaryName(std::string_view name, const Location &folder)
{
    const QString token = QUuid::createUuid().toString(QUuid::WithoutBraces).left(tokenLength - 1);
    const long limit = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    return fittingName(std::string(renamePrefix) + token.toStdString() + '-' + std::string(name),
                       static_cast<std::size_t>(limit > 64 ? std::min(limit, 255L) : 255L));
}

std::string nameInTemporary(std::string_view temporary)
{
    std::string_view rest = temporary.substr(std::min(renamePrefix.size(), temporary.size()));
    if (rest.size() > tokenLength && rest[tokenLength - 1] == '-')
        rest.remove_prefix(tokenLength);
    return std::string(rest.empty() ? temporary : rest);
}

std::vector<CutShortRename> cutShortRenames(const Location &logs, const Location &folder, Instant now)
{
    std::vector<CutShortRename> found;
    std::set<std::string> logged;
    bool orphansAreKnown = true;
    for (const FoundLog &log : foundLogs(logs)) {
        orphansAreKnown = orphansAreKnown && !(log.lives() && log.damage);
        for (const LoggedRename &one : log.renames)
            logged.insert(one.temporary.native());
        if (log.lives())
            continue;
        if (isSettled(log))
            ::unlink(log.file.c_str());
        else if (concerns(log, folder))
            found.push_back({log.file, log.renames});
    }
    if (CutShortRename orphans = orphansIn(folder, logged, now); orphansAreKnown && !orphans.renames.empty())
        found.push_back(std::move(orphans));
    return found;
}

std::vector<UnreadLog> unreadRenameLogs(const Location &logs)
{
    std::vector<UnreadLog> unread;
    if (std::optional<UnreadLog> folder = unreadFolder(logs))
        unread.push_back(*std::move(folder));
    for (const FoundLog &log : foundLogs(logs)) {
        if (log.damage)
            unread.push_back({log.file, *log.damage});
    }
    return unread;
}

std::vector<CutShortRename> loggedCutShortRenames(const Location &logs)
{
    std::vector<CutShortRename> found;
    for (const FoundLog &log : foundLogs(logs)) {
        const bool waits = std::ranges::any_of(log.renames, entryExists, &LoggedRename::temporary);
        if (!log.lives() && waits)
            found.push_back({log.file, log.renames});
    }
    return found;
}

EntryFailures restoreCutShort(const CutShortRename &batch, FileActions &files)
{
    Result<FileLock> lock = batch.log.empty() ? Result<FileLock>() : FileLock::tryNow(batch.log);
    if (!lock)
        return {{{}, lock.error()}};
    Restoring restoring(batch, files);
    EntryFailures failures = restoring.run();
    if (batch.log.empty())
        return failures;
    if (restoring.settled())
        ::unlink(batch.log.c_str());
    else
        putAside(batch);
    return failures;
}

} // namespace brellin

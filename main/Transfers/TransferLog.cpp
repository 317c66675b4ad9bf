#include "Transfers/TransferLog.h"

#include "Disk/FileAttributes.h"
#include "Disk/FreeName.h"
#include "System/PrivateFolders.h"

#include <QUuid>

#include <algorithm>
#include <cctype>
#include <iterator>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

using Kind = LoggedWork::Kind;

constexpr std::size_t idLength = 8;

std::string freshId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).left(idLength).toUpper().toStdString();
}

bool isLinked(int descriptor)
{
    struct stat status{};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

} // namespace

bool TransferLog::isTemporaryName(std::string_view name)
{
    if (!name.starts_with(copyPrefix))
        return false;
    name.remove_prefix(copyPrefix.size());
    return name.size() > idLength + 1 && name[idLength] == '-' &&
           std::ranges::all_of(name.substr(0, idLength), [](unsigned char c) { return std::isxdigit(c) != 0; });
}

Location TransferLog::temporaryFor(const Location &dst, Renames renames)
{
    const Location folder = dst.parent_path();
    const std::string head = std::string(copyPrefix) + freshId() + "-";
    const std::size_t room = nameLimit(folder) - std::min(nameLimit(folder) - 1, head.size());
    const Location place = folder / (head + fittingName(dst.filename().native(), room));
    // Without a note, others recognise the entry only when it is a day old.
    (void)note({Kind::Copy, place, dst, {}, {}, renames == Renames::Reserving});
    return place;
}

void TransferLog::noteRename(const Location &src, const Location &dst)
{
    (void)note({Kind::Rename, src, dst, {}, {}, true});
}

Result<void> TransferLog::noteRemovals(const std::vector<Removal> &removals)
{
    for (const Removal &one : removals)
        TRY(note({Kind::Removal, one.source, one.copy, {}, one.copyBegan, false}));
    if (!removals.empty() && m_lock.held() && ::fdatasync(m_lock.descriptor()) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> TransferLog::note(LoggedWork work)
{
    if (!m_lock.held())
        open();
    if (const Location folder = work.from.parent_path(); folder != m_folderAtWork) {
        m_folderAtWork = folder;
        m_volumeAtWork = volumeOf(work.from);
    }
    work.volume = m_volumeAtWork;
    if (work.kind != Kind::Removal)
        work.when = Instant(std::chrono::system_clock::now().time_since_epoch());
    const QByteArray line = work.line();
    // Reserve half of the log for removals, which cannot start without their notes.
    const qint64 most = work.kind == Kind::Removal ? longestLog : longestLog / 2;
    if (work.kind == Kind::Copy)
        m_noted.push_back(std::move(work));
    return write(line, most);
}

/// Removes a partial line, which would corrupt the next one.
Result<void> TransferLog::write(const QByteArray &line, qint64 most) const
{
    if (m_folder.empty())
        return {};
    if (!m_lock.held())
        return failure(QStringLiteral("Das Protokoll der Übertragung lässt sich nicht anlegen."));
    const off_t end = ::lseek(m_lock.descriptor(), 0, SEEK_END);
    if (end + line.size() > most)
        return failure(tooLarge(most));
    const ssize_t written = ::write(m_lock.descriptor(), line.constData(), static_cast<std::size_t>(line.size()));
    if (written == line.size())
        return {};
    const Failure why = written < 0 ? Failure::lastSystem() : Failure::system(ENOSPC);
    if (::ftruncate(m_lock.descriptor(), end) != 0)
        return failure(Failure::lastSystem());
    return failure(why);
}

void TransferLog::open()
{
    if (m_folder.empty() || !createPrivateFolders(m_folder))
        return;
    // Others remove dead logs, and a new log looks dead until it is locked: retry if it was removed.
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_file = m_folder / (freshId() + ".log");
        Result<FileLock> lock = FileLock::tryNow(m_file);
        if (lock && isLinked(lock->descriptor())) {
            m_lock = std::move(*lock);
            return;
        }
    }
}

/// After a normal end the outcome was reported, so removals need no log any more.
TransferLog::~TransferLog()
{
    if (m_lock.held() && areOver(m_noted))
        ::unlink(m_file.c_str());
}

LoggedNames LoggedNames::read(const Location &folder)
{
    LoggedNames names;
    for (TransferLogFile &log : TransferLogFile::all(folder)) {
        std::vector<std::string> &known = log.dead() ? names.dead : names.living;
        for (const LoggedWork &work : log.works) {
            if (work.kind == Kind::Copy)
                known.push_back(work.from.filename().native());
        }
        if (log.dead())
            std::ranges::move(log.works, std::back_inserter(names.ofTheDead));
    }
    return names;
}

std::vector<Location> LoggedNames::reservesIn(const Location &folder) const
{
    std::vector<Location> reserves;
    for (const LoggedWork &work : ofTheDead) {
        if (work.to.parent_path() == folder && work.leftReserve())
            reserves.push_back(work.to);
    }
    return reserves;
}

void removeFinishedLogs(const Location &folder)
{
    std::vector<TransferLogFile> logs = TransferLogFile::all(folder);
    std::erase_if(logs, [](const TransferLogFile &log) { return !log.dead(); });
    for (TransferLogFile &log : logs)
        log.lock.release();
    for (const TransferLogFile &log : logs) {
        if (!log.isOver())
            continue;
        const TransferLogFile now = TransferLogFile::of(log.file);
        if (now.dead() && now.works == log.works)
            ::unlink(log.file.c_str());
    }
}

} // namespace brellin

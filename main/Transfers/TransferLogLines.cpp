#include "Transfers/TransferLogLines.h"

#include "Disk/FileAttributes.h"
#include "Disk/NameReserve.h"
#include "Disk/Volumes.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>

namespace brellin {

namespace {

using Kind = LoggedWork::Kind;

constexpr std::array words{std::pair{Kind::Copy, "copy"}, std::pair{Kind::Rename, "rename"},
                           std::pair{Kind::Removal, "removal"}, std::pair{Kind::Settled, "settled"}};

/// Percent-encodes, since a name may contain newlines and tabs.
QByteArray fieldOf(const Location &place)
{
    return QByteArray::fromStdString(place.native()).toPercentEncoding("/");
}

Location placeOf(const QByteArray &field)
{
    return QByteArray::fromPercentEncoding(field).toStdString();
}

std::optional<LoggedWork> workIn(const QByteArray &line)
{
    const QByteArrayList fields = line.split('\t');
    const auto word = std::ranges::find_if(words, [&](const auto &one) { return fields.front() == one.second; });
    if (word == words.end() || fields.size() != 6 || fields[1].isEmpty())
        return std::nullopt;
    bool isNumber = false;
    const qlonglong when = fields[4].toLongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return LoggedWork{word->first,
                      placeOf(fields[1]),
                      placeOf(fields[2]),
                      placeOf(fields[3]),
                      Instant(std::chrono::nanoseconds(when)),
                      fields[5] == "1"};
}

/// Ignores an incomplete last line: the action it announces was not started.
void readLines(const QByteArray &text, TransferLogFile &log)
{
    qsizetype number = 1;
    for (qsizetype at = 0, end = 0; (end = text.indexOf('\n', at)) >= 0; at = end + 1, ++number) {
        if (std::optional<LoggedWork> work = workIn(text.mid(at, end - at)))
            log.works.push_back(*std::move(work));
        else
            log.damage = QStringLiteral("Zeile %1 ist beschädigt.").arg(number);
    }
}

bool isPresent(const Location &volume)
{
    const Result<Location> top = SystemVolumes().top(volume);
    return entryExists(volume) && top && *top == volume;
}

} // namespace

QByteArray LoggedWork::line() const
{
    const auto *const word = std::ranges::find(words, kind, [](const auto &one) { return one.first; });
    const QByteArrayList fields{word->second,
                                fieldOf(from),
                                fieldOf(to),
                                fieldOf(volume),
                                QByteArray::number(static_cast<qlonglong>(when.time_since_epoch().count())),
                                reserves ? "1" : "0"};
    return fields.join('\t') + '\n';
}

bool areOver(const std::vector<LoggedWork> &works)
{
    // Collect volumes first: thousands of works usually share one, which may be slow to query.
    std::set<Location> volumes;
    for (const LoggedWork &work : works)
        volumes.insert(work.volume);
    return std::ranges::none_of(works, entryExists, &LoggedWork::from) && std::ranges::all_of(volumes, isPresent);
}

bool LoggedWork::leftReserve() const
{
    if (!reserves || !entryExists(from))
        return false;
    const Result<FileAttributes> found = readAttributes(to);
    // A copy gets its name when all of it is written, which may be hours after the note.
    return found && mayBeReserve(*found, when, ReserveCreated::AnyTimeAfterNote);
}

std::vector<LoggedWork> TransferLogFile::removals() const
{
    std::vector<LoggedWork> open;
    for (const LoggedWork &work : works) {
        if (work.kind == Kind::Settled)
            std::erase_if(open, [&](const LoggedWork &one) { return one.from == work.from && one.to == work.to; });
        else if (work.kind == Kind::Removal)
            open.push_back(work);
    }
    return open;
}

bool TransferLogFile::isOver() const
{
    if (damage)
        return false;
    std::vector<LoggedWork> open = removals();
    std::ranges::copy_if(
        works, std::back_inserter(open), [](Kind kind) { return kind == Kind::Copy; }, &LoggedWork::kind);
    const auto isReserveLeft = [](const LoggedWork &work) { return work.kind == Kind::Rename && work.leftReserve(); };
    return std::ranges::none_of(works, isReserveLeft) && areOver(open);
}

TransferLogFile TransferLogFile::of(const Location &file)
{
    TransferLogFile log{file, {}, {}, {}};
    if (Result<FileLock> lock = FileLock::tryNow(file))
        log.lock = *std::move(lock);
    if (const Result<QByteArray> text = readLog(file))
        readLines(*text, log);
    else
        log.damage = text.error().message;
    return log;
}

std::vector<TransferLogFile> TransferLogFile::all(const Location &folder)
{
    std::vector<TransferLogFile> found;
    if (std::optional<UnreadLog> unread = unreadFolder(folder))
        found.push_back({unread->file, {}, {}, std::move(unread->why)});
    std::error_code none;
    for (std::filesystem::directory_iterator entry(folder, none), end; !none && entry != end; entry.increment(none)) {
        if (entry->path().extension() == ".log")
            found.push_back(of(entry->path()));
    }
    return found;
}

std::vector<UnreadLog> unreadTransferLogs(const Location &folder)
{
    std::vector<UnreadLog> unread;
    for (const TransferLogFile &log : TransferLogFile::all(folder)) {
        if (log.damage)
            unread.push_back({log.file, *log.damage});
    }
    return unread;
}

Location volumeOf(const Location &entry)
{
    return SystemVolumes().top(entry.parent_path()).value_or("/");
}

} // namespace brellin

#include "Transfers/UnfinishedMove.h"

#include "Base/Descriptor.h"
#include "Base/German.h"
#include "Disk/NameReserve.h"
#include "Disk/Walk.h"
#include "Transfers/TransferLogLines.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Compares a source with its copy.
class Comparison {
public:
    explicit Comparison(UnfinishedMove move) : m_move(std::move(move)) {}

    UnfinishedMove run(const JobControl *control)
    {
        const Result<FileAttributes> top = readAttributes(m_move.source);
        if (!top || !top->isFolder()) {
            count(m_move.copy, top.value_or(FileAttributes()));
            return std::move(m_move);
        }
        WalkOptions options;
        options.attributes = Attribute::Size | Attribute::Modified;
        const auto compare = [this](const WalkEntry &entry) {
            if (!entry.attributes.isFolder())
                count(m_move.copy / entry.location().lexically_relative(m_move.source), entry.attributes);
            return WalkStep::Continue;
        };
        // Unreadable entries are kept in any case.
        (void)walk(m_move.source, options, compare, control);
        return std::move(m_move);
    }

private:
    void count(const Location &copy, const FileAttributes &original)
    {
        const Result<FileAttributes> there = readAttributes(copy);
        if (!there || there->kind != original.kind || there->size != original.size ||
            std::chrono::abs(there->modified - original.modified) > coarseTime) {
            ++m_move.differing;
            return;
        }
        ++m_move.entries;
        m_move.bytes += original.isFile() ? original.size : 0;
    }

    UnfinishedMove m_move;
};

/// Also a source that contains only empty folders.
bool canBeFinished(const UnfinishedMove &move)
{
    return entryExists(move.copy) && (move.entries > 0 || move.differing == 0);
}

/// Notes that the removal is settled; hold the log's lock.
void settle(const Location &log, LoggedWork removal)
{
    removal.kind = LoggedWork::Kind::Settled;
    const QByteArray line = removal.line();
    // Remove an incomplete last line first, which would merge with the new one.
    const Result<QByteArray> text = readLog(log);
    if (!text || ::truncate(log.c_str(), text->lastIndexOf('\n') + 1) != 0)
        return;
    const Descriptor file(::open(log.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW));
    if (!file.isOpen())
        return;
    [[maybe_unused]] const ssize_t written =
        ::write(file.number(), line.constData(), static_cast<std::size_t>(line.size()));
}

bool isAway(const LoggedWork &removal)
{
    return !entryExists(removal.from) || volumeOf(removal.from) != removal.volume;
}

struct NotedRemoval {
    Location log;
    bool dead = false;
    LoggedWork removal;
};

struct NotedRemovals {
    std::vector<NotedRemoval> all;
    bool complete = true; ///< all logs could be read
};

/// Reads all removals. Holds each log's lock only while reading, since a locked log counts as running, and accesses no
/// volume meanwhile.
NotedRemovals notedRemovals(const Location &logs)
{
    NotedRemovals noted;
    for (const TransferLogFile &log : TransferLogFile::all(logs)) {
        noted.complete = noted.complete && !log.damage;
        for (LoggedWork &removal : log.removals())
            noted.all.push_back({log.file, log.dead(), std::move(removal)});
    }
    return noted;
}

/// Whether `copy` relates to `to` as `source` relates to `from`: both are the same, or below, or above by the same
/// relative path.
bool isSamePart(const Location &source, const Location &from, const Location &copy, const Location &to)
{
    if (isAtOrBelow(source, from))
        return isAtOrBelow(copy, to) && source.lexically_relative(from) == copy.lexically_relative(to);
    return isAtOrBelow(from, source) && isAtOrBelow(to, copy) &&
           from.lexically_relative(source) == to.lexically_relative(copy);
}

/// Whether `copy` contains an entry that `source` lacks.
bool holdsMore(const Location &copy, const Location &source, const JobControl &control)
{
    const Result<FileAttributes> attributes = readAttributes(copy);
    if (!attributes || !attributes->isFolder() || !entryExists(source))
        return !entryExists(source);
    bool more = false;
    const auto compare = [&](const WalkEntry &entry) {
        more = !entryExists(source / entry.location().lexically_relative(copy));
        return more ? WalkStep::Stop : WalkStep::Continue;
    };
    const Result<WalkOutcome> walked = walk(copy, {}, compare, &control);
    return more || !walked || !walked->unreadable.empty();
}

} // namespace

std::vector<UnfinishedMove> notedMoves(const Location &logs)
{
    std::vector<UnfinishedMove> moves;
    for (const auto &[log, dead, removal] : notedRemovals(logs).all) {
        if (dead && !isAway(removal))
            moves.push_back({log, removal.from, removal.to, removal.when, 0, 0, 0});
    }
    return moves;
}

QString UnfinishedMove::question() const
{
    QString text =
        QStringLiteral("Das Verschieben von „%1“ nach „%2“ wurde unterbrochen, als das Original entfernt wurde. "
                       "Die Kopie war vollständig. Am alten Ort, in „%3“, %4 da.")
            .arg(shownName(source), shownName(copy.parent_path()), shownName(source.parent_path()),
                 (entries == 1 ? QStringLiteral("ist noch ") : QStringLiteral("sind noch ")) +
                     counted(entries, QStringLiteral("Datei"), QStringLiteral("Dateien")));
    if (differing > 0)
        text += QStringLiteral(" %1 von der Kopie ab und %2.")
                    .arg(counted(differing, QStringLiteral("weitere weicht"), QStringLiteral("weitere weichen")),
                         differing == 1 ? QStringLiteral("bleibt") : QStringLiteral("bleiben"));
    return text +
           QStringLiteral("\n\nBeim Abschließen wird am alten Ort endgültig entfernt, was in der Kopie mit gleichem "
                          "Inhalt steht.");
}

std::vector<UnfinishedMove> unfinishedMoves(const Location &logs, const JobControl *control,
                                            const std::set<Location> &without)
{
    std::vector<UnfinishedMove> found;
    for (const UnfinishedMove &noted : notedMoves(logs)) {
        if (without.contains(noted.source) || !entryExists(noted.copy))
            continue;
        UnfinishedMove move = Comparison(noted).run(control);
        if (control && control->cancelled())
            return {};
        if (canBeFinished(move))
            found.push_back(std::move(move));
    }
    return found;
}

bool mayBeCopyOfUnfinishedMove(const Location &source, const Location &copy, const Location &logs)
{
    const NotedRemovals noted = notedRemovals(logs);
    return !noted.complete || std::ranges::any_of(noted.all, [&](const NotedRemoval &one) {
        return isSamePart(source, one.removal.from, copy, one.removal.to) && !isAway(one.removal);
    });
}

bool isOnlyCompleteCopy(const Location &source, const Location &copy, const Location &logs, const JobControl &control)
{
    return std::ranges::any_of(notedRemovals(logs).all, [&](const NotedRemoval &one) {
        const LoggedWork &removal = one.removal;
        if (!isSamePart(source, removal.from, copy, removal.to) || isAway(removal))
            return false;
        // For a folder above both, compare only what was moved.
        return isAtOrBelow(source, removal.from) ? holdsMore(copy, source, control)
                                                 : holdsMore(removal.to, removal.from, control);
    });
}

EntryFailures finishMove(const UnfinishedMove &move, FileActions &files, const JobControl *control)
{
    const Result<FileLock> lock = FileLock::tryNow(move.log);
    if (!lock)
        return {{move.source, lock.error()}};
    const Result<std::vector<Location>> kept = files.removeHeldByCopy(move.source, move.copy, move.since, control);
    if (!kept && kept.error().isCancelled())
        return {};
    if (!kept)
        return {{move.source, withLead(QStringLiteral("Das Original ließ sich nicht ganz entfernen: "), kept.error())}};
    settle(move.log, {LoggedWork::Kind::Settled, move.source, move.copy, volumeOf(move.source), move.since, false});
    EntryFailures staying;
    for (const Location &one : *kept)
        staying << EntryFailure{one, {QStringLiteral("Weicht von der Kopie ab und bleibt am alten Ort."), {}}};
    return staying;
}

} // namespace brellin

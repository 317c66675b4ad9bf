#include "FileOperations/BatchRenameRun.h"

#include "Disk/CopyTreeRemoval.h"
#include "FileOperations/KnownEntry.h"
#include "FileOperations/RenameLog.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

struct Move {
    Location from;
    Location to;
};

/// Runs a batch and records the steps done.
class Run {
public:
    Run(FileActions &files, JobControl &control) : m_files(files), m_control(control) {}

    Result<void> bothPhases(const std::vector<LoggedRename> &renames)
    {
        m_control.setTotal(2 * static_cast<qint64>(renames.size()));
        for (const LoggedRename &one : renames)
            TRY(move({one.from, one.temporary}));
        for (const LoggedRename &one : renames)
            TRY(move({one.temporary, one.to}));
        return {};
    }

    /// Undoes all steps; returns the locations of entries that could not be renamed back.
    std::vector<Location> undo()
    {
        std::vector<Location> stuck;
        for (auto move = m_moves.rbegin(); move != m_moves.rend(); ++move) {
            // If a later step could not be undone, the entry is not at `to`: skip its earlier step.
            if (entryExists(move->to) && !m_files.rename(move->to, move->from))
                stuck.push_back(move->to);
        }
        return stuck;
    }

private:
    Result<void> move(const Move &one)
    {
        if (m_control.cancelled())
            return failure(Failure::cancelled());
        TRY(m_files.rename(one.from, one.to));
        m_moves.push_back(one);
        m_control.advance();
        return {};
    }

    FileActions &m_files;
    JobControl &m_control;
    std::vector<Move> m_moves;
};

LoggedRename logged(const RenamePair &pair, const FileAttributes &now)
{
    const Location folder = pair.from.parent_path();
    LoggedRename one{pair.from, pair.to, folder / temporaryName(pair.from.filename().native(), folder)};
    one.device = static_cast<std::int64_t>(now.identity.device);
    one.inode = static_cast<std::int64_t>(now.identity.inode);
    one.lasting = keepsInodes(folder);
    one.folder = now.isFolder();
    one.size = now.size;
    one.modified = now.modified.time_since_epoch().count();
    return one;
}

/// Adds temporary names. Fails if an entry is no longer the one that was planned.
Result<std::vector<LoggedRename>> prepared(const std::vector<RenamePair> &pairs)
{
    std::vector<LoggedRename> renames;
    for (const RenamePair &pair : pairs) {
        if (pair.from.native() == pair.to.native())
            continue;
        const Result<FileAttributes> now = readAttributes(pair.from);
        if (!now)
            return failure(
                Failure{QStringLiteral("„%1“: %2").arg(shownName(pair.from), now.error().message), now.error().code});
        if (!isStill(pair.mark, *now, pair.from))
            return failure(QStringLiteral("„%1“ hat sich inzwischen geändert.").arg(shownName(pair.from)));
        renames.push_back(logged(pair, *now));
    }
    return renames;
}

} // namespace

BatchRenameOutcome renameBatch(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                               JobControl &control)
{
    const Result<std::vector<LoggedRename>> renames = prepared(pairs);
    if (!renames)
        return {{}, renames.error(), {}};
    if (renames->empty())
        return {};
    Result<RenameLog> log = RenameLog::create(logs, *renames);
    if (!log)
        return {{}, log.error(), {}};

    BatchRenameOutcome outcome;
    Run run(files, control);
    if (const Result<void> renamed = run.bothPhases(*renames); !renamed) {
        outcome.failure = renamed.error();
        outcome.notPutBack = run.undo();
    } else {
        for (const LoggedRename &one : *renames)
            outcome.done.push_back(recordOf(one.from, one.to));
    }
    // Keep the log while entries have temporary names: it is needed to restore them.
    if (outcome.notPutBack.empty())
        log->remove();
    return outcome;
}

} // namespace brellin

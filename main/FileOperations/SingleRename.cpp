#include "FileOperations/SingleRename.h"

#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/RecordedAction.h"

namespace brellin {

namespace {

bool differOnlyInCase(const Location &from, const Location &to)
{
    return from.native() != to.native() && folded(shownName(from)) == folded(shownName(to));
}

/// Whether to rename through a temporary name with a log. Placeholders are used for files only, and only if the name is
/// free. Names that differ only in case may be one entry with two inode numbers there: whether the other is taken shows
/// only after moving this one away.
bool needsLog(const FileAttributes &entry, const Location &from, const Location &to, const FileActions &files)
{
    if (!files.reservesNames(to.parent_path()))
        return false;
    const Result<FileAttributes> there = readAttributes(to);
    const bool taken = there && there->identity != entry.identity;
    return differOnlyInCase(from, to) || (!entry.isFolder() && !taken);
}

} // namespace

Result<void> renameSingle(const Location &from, const Location &to, FileActions &files, const Location &logs)
{
    const Result<FileAttributes> entry = readAttributes(from);
    if (!entry || from.parent_path() != to.parent_path() || !needsLog(*entry, from, to, files))
        return files.rename(from, to);
    JobControl control;
    const BatchRenameOutcome outcome = renameBatch({{from, to, EntryMark::of(*entry)}}, files, logs, control);
    if (!outcome.notPutBack.empty())
        return failure(Failure{QStringLiteral("Das Umbenennen brach ab; der Eintrag heißt jetzt „%1“.")
                                   .arg(shownName(outcome.notPutBack.front())),
                               outcome.failure->code});
    return outcome.failure ? Result<void>(failure(*outcome.failure)) : Result<void>();
}

namespace {

/// Does one thing to an entry as a step.
Result<void> doRecorded(StepRecords *records, StepKind kind, const Location &from, const Location &to,
                        const std::function<Result<void>()> &act)
{
    if (!records)
        return act();
    OpenStep step = records->begin(kind, {{from, to, from.empty() ? std::nullopt : EntryMark::of(from)}});
    Result<void> done = act();
    if (done) {
        records->remember(to, step.id());
        step.settle(stepEntries({from.empty() ? recordOfMade(from, to) : recordOf(from, to)}));
    }
    return done;
}

} // namespace

Result<void> LoggedFileActions::rename(const Location &from, const Location &to)
{
    return doRecorded(m_records, StepKind::Rename, from, to, [&] { return renameSingle(from, to, m_disk, m_logs); });
}

Result<void> LoggedFileActions::createFolder(const Location &folder)
{
    return doRecorded(m_records, StepKind::NewFolder, {}, folder, [&] { return m_disk.createFolder(folder); });
}

} // namespace brellin

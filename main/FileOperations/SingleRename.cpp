#include "FileOperations/SingleRename.h"

#include "FileOperations/BatchRenameRun.h"

namespace brellin {

namespace {

/// Only files get their names kept free, and only names that no other entry has.
bool keepsNameFree(const FileAttributes &entry, const Location &to, const FileActions &files)
{
    const Result<FileAttributes> there = readAttributes(to);
    const bool taken = there && there->identity != entry.identity;
    return !entry.isFolder() && !taken && files.reservesNames(to.parent_path());
}

} // namespace

Result<void> renameSingle(const Location &from, const Location &to, FileActions &files, const Location &logs)
{
    const Result<FileAttributes> entry = readAttributes(from);
    if (!entry || from.parent_path() != to.parent_path() || !keepsNameFree(*entry, to, files))
        return files.rename(from, to);
    JobControl control;
    const BatchRenameOutcome outcome = renameBatch({{from, to, EntryMark::of(*entry)}}, files, logs, control);
    if (!outcome.notPutBack.empty())
        return failure(Failure{QStringLiteral("Das Umbenennen brach ab; der Eintrag heißt jetzt „%1“.")
                                   .arg(shownName(outcome.notPutBack.front())),
                               outcome.failure->code});
    return outcome.failure ? Result<void>(failure(*outcome.failure)) : Result<void>();
}

} // namespace brellin

#include "Runs/ReservedName.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/NameReserve.h"

namespace brellin {

namespace {

/// Compares without inode number and exact time: such volumes keep neither across a remount.
bool isUnchanged(const EntryMark &mark, const FileAttributes &now)
{
    return now.size == mark.state.size && std::chrono::abs(now.modified - mark.state.modified) <= coarseTime;
}

Result<void> trashReserve(const RunServices &services, const Location &name)
{
    if (!services.locations.isAllowedEntry(name))
        return failure(Failure::system(EPERM));
    TRY(services.trash.put(name));
    return {};
}

} // namespace

ReservedName clearReservedName(const RunServices &services, const JournalledStep &step)
{
    if (step.settled() || !step.reserve)
        return ReservedName::Settled;
    const NameReserve &reserve = *step.reserve;
    const Result<FileAttributes> found = readAttributes(reserve.name);
    if (!found)
        return found.error().is(std::errc::no_such_file_or_directory) ? ReservedName::Settled : ReservedName::Unclear;
    const Result<FileAttributes> entry = readAttributes(reserve.entry);
    // If rename is emulated by a hard link, the entry has both names for a moment: remove the new one.
    if (entry && found->isFile() && found->identity == entry->identity && keepsInodes(reserve.name.parent_path()))
        return services.files.removeOwnCopy(reserve.name) ? ReservedName::Cleared : ReservedName::Unclear;
    const bool entryStays = entry && isUnchanged(reserve.mark, *entry);
    const bool arrived = !entryStays && isUnchanged(reserve.mark, *found);
    if (!found->isFile() || found->size > 0 || !entry || arrived)
        return ReservedName::Settled;
    // The empty file is created right after the journal line.
    const bool ours = entryStays && mayBeReserve(*found, reserve.noted, ReserveCreated::RightAfterNote);
    return ours && trashReserve(services, reserve.name) ? ReservedName::Cleared : ReservedName::Unclear;
}

} // namespace brellin

#include "Records/SettledByDisk.h"

namespace brellin {

StepEntry mergedEntry(const Location &from, const Location &to, const FolderFacts &facts)
{
    StepEntry entry{from, to};
    entry.merged = facts;
    return entry;
}

namespace {

/// Tolerance for clocks and file systems with different time steps.
constexpr auto clockSlack = std::chrono::seconds(2);

bool isBornSince(const FileAttributes &now, Instant date)
{
    return now.created && *now.created >= date - clockSlack;
}

/// The mark that the copy was created with: size and time of its original, since its present ones may be from later
/// changes.
EntryMark markAsCopied(const StepEntry &entry, const FileAttributes &now)
{
    EntryMark mark = EntryMark::of(now);
    if (entry.was && !now.isFolder()) {
        mark.state.size = entry.was->state.size;
        mark.state.modified = entry.was->state.modified;
    }
    return mark;
}

/// The replaced entry was trashed just before.
void findReplaced(StepEntry &entry, const Trash &trash)
{
    if (entry.replacedMark)
        entry.replaced = trash.find(entry.to, entry.replacedMark->state.identity);
    if (!entry.replaced)
        entry.replacedMark.reset();
}

std::optional<StepEntry> arrived(StepEntry entry, const RecordedStep &step, const Trash &trash)
{
    const Result<FileAttributes> there = readAttributes(entry.to);
    if (!there)
        return std::nullopt;
    const bool same = entry.was && entry.was->isSame(*there);
    const bool movedByCopy = step.kind == StepKind::Move && !entryExists(entry.from) && isBornSince(*there, step.date);
    const bool copied = step.kind == StepKind::Copy && isBornSince(*there, step.date);
    const bool moves = step.kind != StepKind::Copy;
    if (!copied && !movedByCopy && !(moves && same))
        return std::nullopt;
    entry.now = same ? EntryMark::of(*there) : markAsCopied(entry, *there);
    findReplaced(entry, trash);
    return entry;
}

std::optional<StepEntry> trashed(StepEntry entry, const Trash &trash)
{
    if (!entry.was || entry.was->isAt(entry.from))
        return std::nullopt;
    const std::optional<Location> place = trash.find(entry.from, entry.was->state.identity);
    if (!place)
        return std::nullopt;
    entry.to = *place;
    entry.now = EntryMark::of(*place);
    return entry;
}

/// Whether the entry is the one of the step and has these rights.
bool hasRights(const StepEntry &entry, const EntryRights &rights)
{
    const Result<ExaminedRights> there = examineRights(entry.to);
    const std::optional<EntryMark> &mark = entry.now ? entry.now : entry.was;
    return there && mark && mark->isSame(there->attributes) && there->rights == rights;
}

std::optional<StepEntry> permitted(StepEntry entry)
{
    if (!entry.rights || !hasRights(entry, entry.rights->now))
        return std::nullopt;
    if (!entry.now)
        entry.now = entry.was;
    return entry;
}

std::optional<StepEntry> made(StepEntry entry, Instant date)
{
    const Result<FileAttributes> there = readAttributes(entry.to);
    if (entry.to.empty() || !there || !isBornSince(*there, date))
        return std::nullopt;
    entry.now = EntryMark::of(*there);
    return entry;
}

std::optional<StepEntry> settledEntry(const StepEntry &entry, const RecordedStep &step, const Trash &trash)
{
    if (entry.merged)
        return entryExists(entry.from) ? std::nullopt : std::optional(entry);
    switch (step.kind) {
    case StepKind::Rename:
    case StepKind::BatchRename:
    case StepKind::Move:
    case StepKind::Copy:
        return arrived(entry, step, trash);
    case StepKind::Trash:
        return trashed(entry, trash);
    case StepKind::Rights:
        return permitted(entry);
    default:
        return made(entry, step.date);
    }
}

bool isMadeBy(StepKind kind)
{
    return kind == StepKind::Copy || kind >= StepKind::NewFolder;
}

} // namespace

std::vector<StepEntry> settledByDisk(const RecordedStep &step, const Trash &trash)
{
    std::vector<StepEntry> done;
    for (const StepEntry &entry : step.entries) {
        if (std::optional<StepEntry> one = settledEntry(entry, step, trash))
            done.push_back(*std::move(one));
    }
    return done;
}

std::vector<StepEntry> takenBackByDisk(const RecordedStep &step)
{
    std::vector<StepEntry> back;
    for (const StepEntry &entry : step.entries) {
        if (entry.rights && hasRights(entry, entry.rights->before))
            back.push_back(entry);
        if (entry.rights)
            continue;
        const bool gone = !entry.now || !entry.now->isAt(entry.to);
        const bool returned = isMadeBy(step.kind) || entryExists(entry.from);
        if (gone && returned)
            back.push_back(entry);
    }
    return back;
}

} // namespace brellin

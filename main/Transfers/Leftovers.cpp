#include "Transfers/Leftovers.h"

#include "Disk/HiddenFolder.h"
#include "Disk/Walk.h"
#include "Transfers/TransferLog.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

/// Minimum age of entries without a log: another machine may be writing them on a server. Without a birth time they
/// never count as old.
constexpr std::chrono::hours foreignPatience{24};

bool isOld(const Location &entry, Instant now)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    if (!attributes)
        return false;
    // A complete copy has its original's modification time, so use the birth time as well.
    const Instant latest = std::max(attributes->modified, attributes->created.value_or(now));
    return now - latest > foreignPatience;
}

std::vector<Location> temporaryEntries(const Location &folder)
{
    std::vector<Location> found;
    WalkOptions options;
    options.subfolders = false;
    const Result<WalkOutcome> walked = walk(folder, options, [&](const WalkEntry &entry) {
        if (TransferLog::isTemporaryName(entry.name))
            found.push_back(entry.location());
        return WalkStep::Continue;
    });
    // If the folder cannot be read, there is nothing to remove.
    return walked ? found : std::vector<Location>();
}

void appendReserves(std::vector<Location> &reserves, const std::vector<Location> &archives)
{
    for (const Location &folder : archives) {
        if (const std::optional<Location> reserve = reservedFor(folder))
            reserves.push_back(*reserve);
    }
}

/// Whether this is an empty placeholder for the final name of a hidden copy or archive.
bool isReserve(const Location &leftover)
{
    const std::string name = leftover.filename().native();
    return !TransferLog::isTemporaryName(name) && !name.starts_with(packingPrefix) &&
           !name.starts_with(unpackingPrefix);
}

} // namespace

std::vector<Location> transferLeftovers(const Location &folder, const Location &logs, const Clock &clock)
{
    const std::vector<Location> archives = abandonedHiddenFolders(folder, clock.now());
    std::vector<Location> entries = temporaryEntries(folder);
    const LoggedNames logged = LoggedNames::read(logs);
    const auto holds = [](const std::vector<std::string> &names, const Location &entry) {
        return std::ranges::find(names, entry.filename().native()) != names.end();
    };
    std::erase_if(entries, [&](const Location &entry) {
        return holds(logged.living, entry) || (!holds(logged.dead, entry) && !isOld(entry, clock.now()));
    });
    std::ranges::copy(archives, std::back_inserter(entries));
    std::ranges::sort(entries);
    // Placeholders are recognised by their hidden entry, so they must be removed before it.
    std::vector<Location> reserves = logged.reservesIn(standardised(folder));
    appendReserves(reserves, archives);
    entries.insert(entries.begin(), reserves.begin(), reserves.end());
    return entries;
}

std::vector<Location> loggedLeftovers(const Location &logs)
{
    std::vector<Location> left;
    std::vector<Location> reserves;
    for (const LoggedWork &work : LoggedNames::read(logs).ofTheDead) {
        if (work.leftReserve())
            reserves.push_back(work.to);
        const bool isCopy = work.kind == LoggedWork::Kind::Copy;
        if (isCopy && TransferLog::isTemporaryName(work.from.filename().native()) && entryExists(work.from))
            left.push_back(work.from);
    }
    removeFinishedLogs(logs);
    std::ranges::sort(left);
    left.insert(left.begin(), reserves.begin(), reserves.end());
    return left;
}

EntryFailures removeTransferLeftovers(const std::vector<Location> &leftovers, const Location &logs, const Clock &clock,
                                      FileActions &files)
{
    // A placeholder is recognised by its hidden entry, so remove it first.
    std::vector<Location> entries = leftovers;
    std::ranges::stable_partition(entries, isReserve);
    EntryFailures failures;
    for (const Location &entry : entries) {
        const std::vector<Location> still = transferLeftovers(entry.parent_path(), logs, clock);
        if (std::ranges::find(still, entry) == still.end())
            continue;
        if (const Result<void> removed = files.removeOwnCopy(entry); !removed)
            failures << EntryFailure{entry, removed.error()};
    }
    return failures;
}

} // namespace brellin

#include "Features/FolderCount.h"

#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <unordered_set>
#include <vector>

namespace brellin {

namespace {

struct IdentityHash {
    std::size_t operator()(const FileIdentity &identity) const
    {
        return std::hash<std::uint64_t>()(identity.inode * 0x9E3779B97F4A7C15U + identity.device);
    }
};

/// Hard-linked files counted so far, in shards to reduce lock contention.
class SeenFiles {
public:
    /// Returns false the second time.
    bool insert(const FileIdentity &identity)
    {
        Shelf &shelf = m_shelves.at(identity.inode % m_shelves.size());
        const std::scoped_lock lock(shelf.mutex);
        return shelf.seen.insert(identity).second;
    }

private:
    struct Shelf {
        std::mutex mutex;
        std::unordered_set<FileIdentity, IdentityHash> seen;
    };
    std::array<Shelf, 16> m_shelves;
};

/// The totals of one thread, on a cache line of its own.
struct alignas(64) Tally {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::int64_t entries = 0;
};

} // namespace

Result<FolderCount> countFolder(const Location &folder, const JobControl *control, std::int64_t limit)
{
    const FileAttributes top = TRY(readAttributes(folder));
    if (!top.isFolder())
        return FolderCount{top.size, 1, 1, 0, true};

    std::vector<Tally> tallies(static_cast<std::size_t>(walkThreads()));
    SeenFiles seen;
    // Update the shared counter only once per batch.
    const std::int64_t batch = std::clamp<std::int64_t>(limit / 1024, 1, 256);
    std::atomic<std::int64_t> announced = 0;
    std::atomic<bool> capped = false;
    const auto visit = [&](const WalkEntry &entry, int thread) {
        Tally &tally = tallies[static_cast<std::size_t>(thread)];
        if (++tally.entries % batch == 0 && announced.fetch_add(batch) + batch > limit) {
            capped = true;
            return WalkStep::Stop;
        }
        const FileAttributes &attributes = entry.attributes;
        if (attributes.isFolder())
            return WalkStep::Continue;
        if (attributes.isFile() && attributes.links > 1 && !entry.unreadable && !seen.insert(attributes.identity))
            return WalkStep::Continue;
        ++tally.files;
        tally.bytes += attributes.size;
        return WalkStep::Continue;
    };
    WalkOptions options;
    options.attributes = Attribute::Identity | Attribute::Size;
    options.otherVolumes = false;
    const WalkOutcome outcome = TRY(walkParallel(folder, options, visit, control));

    FolderCount count;
    for (const Tally &tally : tallies) {
        count.bytes += tally.bytes;
        count.files += tally.files;
        count.entries += tally.entries;
    }
    count.unreadable = std::ssize(outcome.unreadable);
    count.complete = !capped;
    return count;
}

} // namespace brellin

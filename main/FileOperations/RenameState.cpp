#include "FileOperations/RenameState.h"

#include "Disk/NameReserve.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace brellin {

using At = RenameState::At;

namespace {

/// Possible names by order: entries before `newEnd` may have new names, entries from `oldBegin` on old ones.
struct Bounds {
    std::size_t newEnd;
    std::size_t oldBegin;
};

/// Determines a batch's state from the disk.
class Reading {
public:
    explicit Reading(const CutShortRename &batch) : m_renames(batch.renames), m_hasLog(!batch.log.empty())
    {
        if (const Result<FileAttributes> log = readAttributes(batch.log))
            m_begun = log->modified;
    }

    RenameState read()
    {
        for (const LoggedRename &one : m_renames)
            m_state.entries.push_back(waits(one) ? At::Temporary : At::Unknown);
        if (!m_hasLog)
            return std::move(m_state);
        const Bounds bounds = boundsOf();
        for (std::size_t i = 0; i < m_renames.size(); ++i) {
            if (!m_state.waits(i))
                m_state.entries[i] = placeOf(i, bounds);
        }
        addSurplus(bounds);
        return std::move(m_state);
    }

private:
    bool waits(const LoggedRename &one)
    {
        if (!entryExists(one.temporary))
            return false;
        const bool elsewhere = one.isAt(one.from) || one.isAt(one.to);
        if (one.isAt(one.temporary) || !elsewhere || !keepsNameFree(one.temporary, one))
            return true;
        m_reserved = static_cast<std::size_t>(&one - m_renames.data());
        m_state.surplus.push_back(one.temporary);
        return false;
    }

    /// Whether this is an empty file newer than the log, on a volume where a rename creates placeholders.
    bool keepsNameFree(const Location &location, const LoggedRename &one) const
    {
        const Result<FileAttributes> found = readAttributes(location);
        return found && !one.lasting && mayBeReserve(*found, m_begun, ReserveCreated::AnyTimeAfterNote);
    }

    Bounds boundsOf() const
    {
        const auto isWaiting = [](At at) { return at == At::Temporary; };
        const std::vector<At> &entries = m_state.entries;
        const auto waiting = static_cast<std::size_t>(std::ranges::count_if(entries, isWaiting));
        const std::size_t count = entries.size();
        if (waiting == 0 && m_reserved && count > 1)
            return *m_reserved == 0 ? Bounds{0, 0} : Bounds{count, count};
        if (waiting > 0 && std::ranges::is_partitioned(entries, isWaiting))
            return {0, waiting};
        if (waiting > 0 && std::ranges::is_partitioned(entries, std::not_fn(isWaiting)))
            return {count - waiting, count};
        return {count, 0};
    }

    /// The state of an entry without its temporary name. Identity decides if the volume keeps inodes; otherwise the
    /// order.
    At placeOf(std::size_t i, const Bounds &bounds) const
    {
        const LoggedRename &one = m_renames[i];
        const bool newByOrder = i < bounds.newEnd;
        const bool oldByOrder = i >= bounds.oldBegin;
        const bool isNew = (one.lasting || newByOrder) && one.isAt(one.to);
        const bool isOld = (one.lasting || oldByOrder) && one.isAt(one.from);
        if (isNew != isOld)
            return isNew ? At::New : At::Old;
        if (newByOrder != oldByOrder)
            return newByOrder ? newOrNot(one, isNew) : At::Old;
        return isOld || entryExists(one.from) || entryExists(one.to) ? At::Unknown : At::Gone;
    }

    static At newOrNot(const LoggedRename &one, bool isNew)
    {
        if (isNew)
            return At::New;
        return entryExists(one.to) ? At::Unknown : At::Gone;
    }

    /// Leftovers are possible only next to the boundary: at the old name of the last entry with a temporary name while
    /// others have old names, or at the new name of the first one while others have new names.
    void addSurplus(const Bounds &bounds)
    {
        const auto isWaiting = [](At at) { return at == At::Temporary; };
        const std::vector<At> &entries = m_state.entries;
        const auto first = std::ranges::find_if(entries, isWaiting);
        if (first == entries.end())
            return;
        const auto last = std::find_if(entries.rbegin(), entries.rend(), isWaiting).base() - 1;
        const LoggedRename &next = m_renames[static_cast<std::size_t>(first - entries.begin())];
        const LoggedRename &latest = m_renames[static_cast<std::size_t>(last - entries.begin())];
        if (bounds.newEnd == 0)
            addIfOurs(latest, latest.from);
        if (bounds.oldBegin == entries.size())
            addIfOurs(next, next.to);
    }

    void addIfOurs(const LoggedRename &one, const Location &name)
    {
        const Result<FileAttributes> waiting = readAttributes(one.temporary);
        const Result<FileAttributes> found = readAttributes(name);
        const bool sameFile =
            waiting && found && !found->isFolder() && found->links > 1 && waiting->identity == found->identity;
        if (sameFile || keepsNameFree(name, one))
            m_state.surplus.push_back(name);
    }

    const std::vector<LoggedRename> &m_renames;
    const bool m_hasLog;
    Instant m_begun;
    std::optional<std::size_t> m_reserved; ///< entry whose temporary name is a placeholder
    RenameState m_state;
};

} // namespace

bool RenameState::certain() const
{
    return std::ranges::find(entries, At::Unknown) == entries.end();
}

RenameState RenameState::of(const CutShortRename &batch)
{
    return Reading(batch).read();
}

} // namespace brellin

#include "Disk/CopyRest.h"

#include "Disk/CopyTreeFolders.h"
#include "Disk/MetadataMark.h"
#include "Disk/RemovalWalk.h"
#include "Disk/SameBytes.h"
#include "Disk/SourceStatus.h"

#include <utility>

#include <unistd.h>

namespace brellin {

namespace {

/// Removes what the copy holds and keeps the names of the rest.
class RestRemoval : private RemovalWalk {
public:
    RestRemoval(Location source, EntryPlace copy, Instant since)
        : m_source(std::move(source))
        , m_copy(std::move(copy))
        , m_since(since)
    {
    }

    Result<std::vector<Location>> run(NameIn top)
    {
        TRY(RemovalWalk::run(top, 0));
        return std::move(m_kept);
    }

private:
    bool mayGo(NameIn entry, std::uint64_t, const struct stat &now) override
    {
        const bool held = isHeld(entry, now).value_or(false);
        if (!held)
            m_kept.push_back(placeOf(entry.name, m_source));
        return held;
    }

    /// What is in it has been named, or came this very moment.
    void filled(std::string_view name) override
    {
        if (m_kept.empty() && !failed())
            m_kept.push_back(placeOf(name, m_source));
    }

    Result<bool> isHeld(NameIn entry, const struct stat &now) const
    {
        const EntryPlace copy = TRY(copyOf(entry));
        const struct stat there = TRY(statusOf(copy.at()));
        if ((there.st_mode & S_IFMT) != (now.st_mode & S_IFMT) || sameEntry(there, now))
            return false;
        if (S_ISDIR(now.st_mode))
            return true;
        if (S_ISLNK(now.st_mode))
            return sameLinkTarget(entry, copy.at());
        return S_ISREG(now.st_mode) && there.st_size == now.st_size && TRY(isSameFile(entry, copy.at(), now));
    }

    Result<bool> isSameFile(NameIn entry, NameIn copy, const struct stat &now) const
    {
        const Descriptor original = TRY(openForReading(entry));
        const Descriptor other = TRY(openForReading(copy));
        const SourceStatus opened = TRY(SourceStatus::ofOpen(original.number()));
        const SourceStatus held = TRY(SourceStatus::ofOpen(other.number()));
        if (!sameEntry(opened.status, now) || !TRY(sameBytes(original.number(), other.number(), now.st_size)))
            return false;
        constexpr auto tick = std::chrono::milliseconds(20); // of the clock that files get their times from
        const bool untouched = instantFrom(now.st_ctim) + tick < m_since;
        const auto mark = MetadataMark::of(original.number(), now);
        if (!untouched && mark != MetadataMark::of(other.number(), held.status))
            return false;
        const struct stat after = TRY(statusOf(entry));
        return sameEntry(after, now) && sameTimesAndSize(after, now);
    }

    /// Where the copy of an entry in the folder at hand lies.
    Result<EntryPlace> copyOf(NameIn entry) const
    {
        if (atTop())
            return EntryPlace{TRY(openFolderPlace(NameIn{m_copy.folder.number(), "."})), m_copy.name};
        const Descriptor top = TRY(openFolderPlace(m_copy.at()));
        return EntryPlace{TRY(openFolderBelow(top.number(), relativeFolder())), entry.name};
    }

    Location m_source;
    EntryPlace m_copy;
    Instant m_since;
    std::vector<Location> m_kept;
};

} // namespace

Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since)
{
    const EntryPlace place = TRY(openPlace(source));
    return RestRemoval(standardised(source), TRY(openPlace(copy)), since).run(place.at());
}

} // namespace brellin

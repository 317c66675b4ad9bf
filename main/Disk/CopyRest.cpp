#include "Disk/CopyRest.h"

#include "Disk/KeepingRemoval.h"
#include "Disk/MetadataMark.h"
#include "Disk/SameBytes.h"
#include "Disk/SourceStatus.h"

#include <utility>

#include <unistd.h>

namespace brellin {

namespace {

/// Removes what the copy contains.
class RestRemoval : public KeepingRemoval {
public:
    RestRemoval(Location source, EntryPlace copy, Instant since, const JobControl *control)
        : KeepingRemoval(std::move(source))
        , m_copy(std::move(copy))
        , m_since(since)
        , m_control(control)
    {
    }

private:
    Result<bool> goes(NameIn entry, std::uint64_t, const struct stat &now) override
    {
        TRY(stillWanted());
        return isHeld(entry, now);
    }

    Result<void> stillWanted() const
    {
        return m_control && m_control->cancelled() ? failure(Failure::cancelled()) : Result<void>();
    }

    Result<bool> isHeld(NameIn entry, const struct stat &now) const
    {
        const EntryPlace copy = TRY(counterpartOf(entry, m_copy));
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
        const auto beat = [this] { return stillWanted(); };
        if (!sameEntry(opened.status, now) || !TRY(sameBytes(original.number(), other.number(), now.st_size, beat)))
            return false;
        constexpr auto tick = std::chrono::milliseconds(20); // resolution of the kernel's file time clock
        const bool untouched = instantFrom(now.st_ctim) + tick < m_since;
        const auto mark = MetadataMark::of(original.number(), now);
        if (!untouched && mark != MetadataMark::of(other.number(), held.status))
            return false;
        const struct stat after = TRY(statusOf(entry));
        return sameEntry(after, now) && sameTimesAndSize(after, now);
    }

    EntryPlace m_copy;
    Instant m_since;
    const JobControl *m_control;
};

} // namespace

Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                               const JobControl *control)
{
    const EntryPlace place = TRY(openPlace(source));
    return RestRemoval(standardised(source), TRY(openPlace(copy)), since, control).run(place.at(), 0);
}

} // namespace brellin

#include "Disk/CopiedEntries.h"

#include "Disk/KeepingRemoval.h"
#include "Disk/MetadataMark.h"
#include "Disk/SameBytes.h"

#include <map>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Walks a copied source and keeps what has changed since.
class SourceWalk : public KeepingRemoval {
public:
    enum class Act { Remove, Look };
    SourceWalk(Act act, Location source, const CopiedEntries &copied, EntryPlace copy, const JobControl *control)
        : KeepingRemoval(std::move(source))
        , m_act(act)
        , m_copied(copied)
        , m_copy(std::move(copy))
        , m_control(control)
    {
    }

private:
    Result<bool> goes(NameIn entry, std::uint64_t path, const struct stat &now) override
    {
        const CopiedEntries::Entry *const copied = m_copied.find(path, now);
        if (!copied || !TRY(isInCopy(entry, now)))
            return false;
        return m_copied.isProvenBy(*copied, now) || isChangedByUs(now) || TRY(isStillTheSame(entry, *copied, now));
    }

    Result<void> removeFile(NameIn entry, const struct stat &now) override
    {
        if (m_act == Act::Look)
            return {};
        if (now.st_nlink < 2)
            return RemovalWalk::removeFile(entry, now);
        // Removing one hard link changes the change time of the others, which are still unchanged.
        const auto opened = openForReading(entry);
        TRY(RemovalWalk::removeFile(entry, now));
        struct stat after{};
        if (opened && ::fstat(opened->number(), &after) == 0 && sameEntry(after, now))
            m_changedByUs[{now.st_dev, now.st_ino}] = after;
        return {};
    }

    Result<void> removeFolder(NameIn entry) override
    {
        return m_act == Act::Look ? Result<void>() : RemovalWalk::removeFolder(entry);
    }

    bool isChangedByUs(const struct stat &now) const
    {
        const auto one = m_changedByUs.find({now.st_dev, now.st_ino});
        return one != m_changedByUs.end() && sameTimesAndSize(one->second, now);
    }

    /// Check the copy as well: it may have been changed while the transfer ran.
    Result<bool> isInCopy(NameIn entry, const struct stat &now) const
    {
        const EntryPlace place = TRY(counterpartOf(entry, m_copy));
        const struct stat copy = TRY(statusOf(place.at()));
        const bool sized = !S_ISREG(now.st_mode) || copy.st_size == now.st_size;
        return (copy.st_mode & S_IFMT) == (now.st_mode & S_IFMT) && sized && !sameEntry(copy, now);
    }

    /// Compares metadata and content if times prove nothing.
    Result<bool> isStillTheSame(NameIn entry, const CopiedEntries::Entry &copied, const struct stat &now)
    {
        if (S_ISLNK(now.st_mode))
            return isStillTheLink(entry, copied, now);
        const bool folder = S_ISDIR(now.st_mode);
        const Descriptor original = TRY(folder ? openFolder(entry) : openForReading(entry));
        if (MetadataMark::of(original.number(), now) != copied.mark)
            return false;
        if (!folder && !TRY(hasContentOfCopy(original, entry, now)))
            return false;
        const struct stat after = TRY(statusOf(entry));
        return sameEntry(after, now) && sameTimesAndSize(after, now);
    }

    Result<bool> isStillTheLink(NameIn entry, const CopiedEntries::Entry &copied, const struct stat &now) const
    {
        const EntryPlace copy = TRY(counterpartOf(entry, m_copy));
        return MetadataMark(now).number() == copied.mark && sameLinkTarget(entry, copy.at());
    }

    Result<bool> hasContentOfCopy(const Descriptor &original, NameIn entry, const struct stat &now)
    {
        const EntryPlace place = TRY(counterpartOf(entry, m_copy));
        const Descriptor copy = TRY(openForReading(place.at()));
        const SourceStatus first = TRY(SourceStatus::ofOpen(original.number()));
        const SourceStatus second = TRY(SourceStatus::ofOpen(copy.number()));
        if (!sameEntry(first.status, now) || sameEntry(second.status, now))
            return false;
        return sameBytes(original.number(), copy.number(), now.st_size, [this] { return comparedPiece(); });
    }

    Result<void> comparedPiece()
    {
        if (m_control && m_control->cancelled() && --m_piecesAfterCancel < 0)
            return failure(Failure::cancelled());
        return {};
    }

    const Act m_act;
    const CopiedEntries &m_copied;
    EntryPlace m_copy;
    const JobControl *m_control; ///< may be null
    /// Pieces still compared after a cancel, so that small files copied before it are completed.
    int m_piecesAfterCancel = 64;
    std::map<std::pair<dev_t, ino_t>, struct stat>
        m_changedByUs; ///< status of hard-linked files after we removed one link
};

Result<std::vector<Location>> walkSource(SourceWalk::Act act, const Location &source, const CopiedEntries &copied,
                                         const Location &copy, const JobControl *control)
{
    const EntryPlace place = TRY(openPlace(source));
    return SourceWalk(act, standardised(source), copied, TRY(openPlace(copy)), control).run(place.at(), copied.top());
}

} // namespace

Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied, const Location &copy,
                                           const JobControl *control)
{
    return walkSource(SourceWalk::Act::Remove, source, copied, copy, control);
}

Result<std::vector<Location>> changedSinceCopy(const Location &source, const CopiedEntries &copied,
                                               const Location &copy, const JobControl *control)
{
    return walkSource(SourceWalk::Act::Look, source, copied, copy, control);
}

} // namespace brellin

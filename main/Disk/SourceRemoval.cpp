#include "Disk/CopiedEntries.h"

#include "Disk/MetadataMark.h"
#include "Disk/RemovalWalk.h"
#include "Disk/SameBytes.h"

#include <map>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Goes through a source that was copied, and keeps what is not as it was then.
class SourceWalk : private RemovalWalk {
public:
    enum class Act { Remove, Look };
    SourceWalk(Act act, Location source, const CopiedEntries &copied, EntryPlace copy)
        : m_act(act)
        , m_source(std::move(source))
        , m_copied(copied)
        , m_copy(std::move(copy))
    {
    }

    Result<std::vector<Location>> run(NameIn top)
    {
        TRY(RemovalWalk::run(top, m_copied.top()));
        return std::move(m_kept);
    }

private:
    bool mayGo(NameIn entry, std::uint64_t path, const struct stat &now) override
    {
        const CopiedEntries::Entry *const copied = m_copied.find(path, now);
        const bool asCopied = copied && isInCopy(entry, now).value_or(false) &&
                              (m_copied.isProvenBy(*copied, now) || isChangedByUs(now) ||
                               isStillTheSame(entry, *copied, now).value_or(false));
        if (!asCopied)
            m_kept.push_back(placeOf(entry.name, m_source));
        return asCopied;
    }

    /// What is in it has been named, or came this very moment.
    void filled(std::string_view name) override
    {
        if (m_kept.empty() && !failed())
            m_kept.push_back(placeOf(name, m_source));
    }

    Result<void> removeFile(NameIn entry, const struct stat &now) override
    {
        if (m_act == Act::Look)
            return {};
        if (now.st_nlink < 2)
            return RemovalWalk::removeFile(entry, now);
        // Its other names see their change time move by this, and are still what was copied.
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

    /// The copy may have been at anybody's hands for as long as the transfer took.
    Result<bool> isInCopy(NameIn entry, const struct stat &now) const
    {
        const EntryPlace place = TRY(copyOf(entry));
        const struct stat copy = TRY(statusOf(place.at()));
        const bool sized = !S_ISREG(now.st_mode) || copy.st_size == now.st_size;
        return (copy.st_mode & S_IFMT) == (now.st_mode & S_IFMT) && sized && !sameEntry(copy, now);
    }

    /// Asks the entry itself where its times prove nothing.
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
        const EntryPlace copy = TRY(copyOf(entry));
        return MetadataMark(now).number() == copied.mark && sameLinkTarget(entry, copy.at());
    }

    Result<bool> hasContentOfCopy(const Descriptor &original, NameIn entry, const struct stat &now) const
    {
        const EntryPlace place = TRY(copyOf(entry));
        const Descriptor copy = TRY(openForReading(place.at()));
        const SourceStatus first = TRY(SourceStatus::ofOpen(original.number()));
        const SourceStatus second = TRY(SourceStatus::ofOpen(copy.number()));
        if (!sameEntry(first.status, now) || sameEntry(second.status, now))
            return false;
        return sameBytes(original.number(), copy.number(), now.st_size);
    }

    /// Where the copy of an entry in the folder at hand lies.
    Result<EntryPlace> copyOf(NameIn entry) const
    {
        if (atTop())
            return EntryPlace{TRY(openFolderPlace(NameIn{m_copy.folder.number(), "."})), m_copy.name};
        const Descriptor top = TRY(openFolderPlace(m_copy.at()));
        return EntryPlace{TRY(openFolderBelow(top.number(), relativeFolder())), entry.name};
    }

    const Act m_act;
    Location m_source;
    const CopiedEntries &m_copied;
    EntryPlace m_copy;
    std::map<std::pair<dev_t, ino_t>, struct stat>
        m_changedByUs; ///< files with several names, as our removal left them
    std::vector<Location> m_kept;
};

Result<std::vector<Location>> walkSource(SourceWalk::Act act, const Location &source, const CopiedEntries &copied,
                                         const Location &copy)
{
    const EntryPlace place = TRY(openPlace(source));
    return SourceWalk(act, standardised(source), copied, TRY(openPlace(copy))).run(place.at());
}

} // namespace

Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied, const Location &copy)
{
    return walkSource(SourceWalk::Act::Remove, source, copied, copy);
}

Result<std::vector<Location>> changedSinceCopy(const Location &source, const CopiedEntries &copied,
                                               const Location &copy)
{
    return walkSource(SourceWalk::Act::Look, source, copied, copy);
}

} // namespace brellin

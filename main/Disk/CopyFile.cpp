#include "Disk/CopyFile.h"

#include "Disk/CopyTreeFolders.h"
#include "Disk/SameBytes.h"

#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Gives back the turn at the end of the scope.
class HeldTurn {
public:
    explicit HeldTurn(CopyTurn &turn) : m_turn(turn) {}
    ~HeldTurn() { m_turn.give(); }
    HeldTurn(const HeldTurn &) = delete;
    HeldTurn &operator=(const HeldTurn &) = delete;

private:
    CopyTurn &m_turn;
};

} // namespace

Failure notOrdinary()
{
    return {QStringLiteral("Das ist keine gewöhnliche Datei, sondern eine Pipe, ein Socket oder ein Gerät."),
            std::make_error_code(std::errc::not_supported)};
}

void CopyRecord::made(std::uint64_t path, ino_t inode)
{
    const std::scoped_lock lock(m_mutex);
    m_made.add(path, inode);
}

void CopyRecord::copied(std::uint64_t path, const SourceStatus &source, std::uint64_t mark)
{
    if (!m_copied)
        return;
    const std::scoped_lock lock(m_mutex);
    m_copied->add(path, source, mark);
}

void CopyRecord::sort()
{
    m_made.sort();
    if (m_copied)
        m_copied->sort();
}

Result<void> CopyTurn::take(CopyPulse &pulse)
{
    std::unique_lock lock(m_mutex);
    while (!m_given.wait_for(lock, std::chrono::milliseconds(20), [this] { return !m_taken; })) {
        lock.unlock();
        TRY(pulse.beat());
        lock.lock();
    }
    m_taken = true;
    return {};
}

void CopyTurn::give()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_taken = false;
    }
    m_given.notify_one();
}

Result<void> CopyFile::run(NameIn source, NameIn destination, const CopyPlace &place)
{
    constexpr off_t large = 4 << 20;
    const Descriptor original = TRY(openForReading(source));
    const SourceStatus seen = TRY(SourceStatus::ofOpen(original.number()));
    if (!S_ISREG(seen.status.st_mode))
        return failure(notOrdinary());
    const bool hasOtherNames = seen.status.st_nlink > 1 && !place.atTop;
    if (seen.status.st_size <= large && !hasOtherNames)
        return copyOpened(original.number(), seen, destination, place);
    TRY(m_common.turn.take(m_common.pulse));
    const HeldTurn held(m_common.turn);
    if (!hasOtherNames || !TRY(linkToFirstCopy(seen, destination, place)))
        return copyOpened(original.number(), seen, destination, place);
    m_common.pulse.addFile();
    return {};
}

Result<void> CopyFile::closeFolder(int source, int destination, const SourceStatus &seen, std::uint64_t path)
{
    const struct stat made = TRY(statusOf({destination, "."}));
    const std::uint64_t mark = TRY(m_metadata.apply(source, seen.status, destination, made));
    m_common.record.copied(path, seen, mark);
    return {};
}

Result<void> CopyFile::copyOpened(int original, SourceStatus seen, NameIn destination, const CopyPlace &place)
{
    const struct stat first = seen.status;
    struct stat made{};
    Descriptor copy = TRY(create(destination, place, made));
    seen = TRY(copyContent(original, seen, copy.number()));
    const std::uint64_t mark = TRY(m_metadata.apply(original, first, copy.number(), made));
    TRY(copy.close());
    m_common.record.copied(OwnEntries::pathMark(place.path, destination.name), seen, mark);
    if (first.st_nlink > 1 && !place.atTop)
        m_common.firstCopies[{first.st_dev, first.st_ino}] = {place.folder(), destination.name, made.st_ino, seen,
                                                              mark};
    m_common.pulse.addFile();
    return {};
}

Result<Descriptor> CopyFile::create(NameIn destination, const CopyPlace &place, struct stat &made)
{
    const int number = ::openat(destination.folder, destination.name,
                                O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (number < 0)
        return failure(Failure::lastSystem());
    Descriptor file(number);
    if (::fstat(number, &made) != 0) {
        const Failure why = Failure::lastSystem();
        ::unlinkat(destination.folder, destination.name, 0);
        return failure(why);
    }
    m_common.record.made(OwnEntries::pathMark(place.path, destination.name), made.st_ino);
    if (place.atTop)
        CopyMetadata::dropInheritedAccess(number);
    return file;
}

Result<SourceStatus> CopyFile::copyContent(int source, SourceStatus seen, int destination)
{
    constexpr off_t large = 1'000'000'000;
    for (int repeats = seen.status.st_size > large ? 1 : 2;; --repeats) {
        const Result<void> copied = m_data.copy(source, seen.status, destination);
        const SourceStatus now = TRY(SourceStatus::ofOpen(source));
        const bool shortened = now.status.st_size < seen.status.st_size;
        if (!copied && !shortened)
            return failure(copied.error());
        if (copied && TRY(isWholeCopy(source, seen, now.status, destination)))
            return seen;
        if (repeats == 0)
            return failure(QStringLiteral("Die Datei wird gerade geändert; beim Kopieren blieb sie nie gleich."));
        if (::ftruncate(destination, 0) != 0)
            return failure(Failure::lastSystem());
        m_data.takeBack();
        seen = now;
    }
}

Result<bool> CopyFile::isWholeCopy(int source, const SourceStatus &seen, const struct stat &now, int copy)
{
    if (seen.settled && sameTimesAndSize(seen.status, now))
        return true;
    const bool rewritten = now.st_size == seen.status.st_size && !sameModified(seen.status, now);
    if (rewritten || now.st_size < seen.status.st_size)
        return false;
    // It grew, its metadata changed, or its times are too recent to prove anything: compare content.
    return sameBytes(source, copy, seen.status.st_size, [this] { return m_common.pulse.beat(); });
}

/// False if there is no first copy, or it cannot be linked to or is outdated: the caller then copies the file.
Result<bool> CopyFile::linkToFirstCopy(const SourceStatus &source, NameIn destination, const CopyPlace &place)
{
    const auto first = m_common.firstCopies.find({source.status.st_dev, source.status.st_ino});
    if (first == m_common.firstCopies.end())
        return false;
    const FirstCopy &known = first->second;
    const auto folder = openFolderBelow(m_common.top.number(), known.folder);
    const NameIn copy{folder ? folder->number() : -1, known.name.c_str()};
    const auto status = folder ? statusOf(copy) : Result<struct stat>(failure(folder.error()));
    const bool same = status && status->st_ino == known.inode && sameTimesAndSize(known.source.status, source.status);
    if (same && ::linkat(copy.folder, copy.name, destination.folder, destination.name, 0) == 0) {
        const std::uint64_t path = OwnEntries::pathMark(place.path, destination.name);
        m_common.record.made(path, status->st_ino);
        m_common.record.copied(path, known.source, known.mark);
        return true;
    }
    if (same && errno == EEXIST)
        return failure(Failure::system(EEXIST));
    m_metadata.hardLinkWasSplit();
    return false;
}

} // namespace brellin

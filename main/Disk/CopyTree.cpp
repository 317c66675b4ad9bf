#include "Disk/CopyTree.h"

#include "Disk/SameBytes.h"

#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

Failure notOrdinary()
{
    return {QStringLiteral("Das ist keine gewöhnliche Datei, sondern eine Pipe, ein Socket oder ein Gerät."),
            std::make_error_code(std::errc::not_supported)};
}

} // namespace

CopyTree::CopyTree(Location source, const CopyOptions &options)
    : m_source(std::move(source))
    , m_options(options)
    , m_pulse(options, [this] { return current(); })
    , m_data(m_pulse)
{
}

Result<CopyReport> CopyTree::run(NameIn source, NameIn destination)
{
    m_made = OwnEntries(knownBy(destination.folder));
    if (m_options.copied) {
        using Proof = CopiedEntries::Proof;
        const bool lasts = knownBy(source.folder) == OwnEntries::KnownBy::Inode;
        const Proof ofEntry = lasts ? Proof::Inode : Proof::None;
        const Proof proof = timesProve(source.folder) ? Proof::InodeAndTime : ofEntry;
        m_options.copied->begin(OwnEntries::pathMark(0, destination.name), proof);
    }
    auto outcome = m_pulse.beat();
    if (outcome)
        outcome = copyEntry(source, DT_UNKNOWN, destination);
    if (outcome)
        outcome = copyContents();
    if (outcome) {
        if (m_options.copied)
            m_options.copied->sort();
        const CopyProgress done = m_pulse.finished();
        return CopyReport{m_metadata.notKept(), done.bytes, done.files};
    }
    if (!m_made.empty()) {
        // Free descriptors, which removing the copy needs if they have run out.
        m_sources = CopyTreeFolders();
        m_destinations = CopyTreeFolders();
        m_top.reset();
        m_made.sort();
        if (const auto removed = removeTree(destination, &m_made); !removed) {
            const QString rest = QStringLiteral(" Ein Rest der Kopie ließ sich nicht entfernen.");
            return failure(Failure{outcome.error().message + rest, outcome.error().code});
        }
    }
    return failure(outcome.error());
}

Result<void> CopyTree::copyContents()
{
    while (!m_levels.empty()) {
        TRY(m_pulse.beat());
        Level &level = m_levels.back();
        if (level.next == level.entries.size()) {
            TRY(leaveFolder());
            continue;
        }
        const ListedName &entry = level.entries[level.next++];
        const char *const name = entry.name.c_str();
        const auto copied = copyEntry({m_sources.current(), name}, entry.type, {m_destinations.current(), name});
        if (!copied)
            return failure(named(copied.error(), entry.name));
    }
    return {};
}

/// `type` is from the folder listing and saves a call; the opened entry is checked again.
Result<void> CopyTree::copyEntry(NameIn source, unsigned char type, NameIn destination)
{
    if (type == DT_REG)
        return copyFile(source, destination);
    if (type == DT_DIR)
        return enterFolder(source, destination);
    const struct stat status = TRY(statusOf(source));
    if (S_ISREG(status.st_mode))
        return copyFile(source, destination);
    if (S_ISDIR(status.st_mode))
        return enterFolder(source, destination);
    if (S_ISLNK(status.st_mode))
        return copyLink(source, SourceStatus::of(status), destination);
    return failure(notOrdinary());
}

Result<void> CopyTree::copyFile(NameIn source, NameIn destination)
{
    const Descriptor original = TRY(openForReading(source));
    SourceStatus seen = TRY(SourceStatus::ofOpen(original.number()));
    const struct stat &status = seen.status;
    if (!S_ISREG(status.st_mode))
        return failure(notOrdinary());
    const bool hasOtherNames = status.st_nlink > 1 && !atTop();
    if (hasOtherNames && TRY(linkToFirstCopy(seen, destination))) {
        m_pulse.addFile();
        return {};
    }
    struct stat made{};
    Descriptor copy = TRY(createFile(destination, made));
    seen = TRY(copyContent(original.number(), seen, copy.number()));
    const std::uint64_t mark = TRY(m_metadata.apply(original.number(), status, copy.number(), made));
    TRY(copy.close());
    takeDown(destination, seen, mark);
    if (hasOtherNames)
        m_firstCopies[{status.st_dev, status.st_ino}] = {relativeFolder(), destination.name, made.st_ino, seen, mark};
    m_pulse.addFile();
    return {};
}

Result<SourceStatus> CopyTree::copyContent(int source, SourceStatus seen, int destination)
{
    constexpr off_t large = 1'000'000'000;
    const std::int64_t before = m_pulse.bytes();
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
        m_pulse.takeBackTo(before);
        seen = now;
    }
}

Result<bool> CopyTree::isWholeCopy(int source, const SourceStatus &seen, const struct stat &now, int copy)
{
    if (seen.settled && sameTimesAndSize(seen.status, now))
        return true;
    const bool rewritten = now.st_size == seen.status.st_size && !sameModified(seen.status, now);
    if (rewritten || now.st_size < seen.status.st_size)
        return false;
    // It grew, its metadata changed, or its times are too recent to prove anything: compare content.
    return sameBytes(source, copy, seen.status.st_size, [this] { return m_pulse.beat(); });
}

Result<void> CopyTree::copyLink(NameIn source, const SourceStatus &original, NameIn destination)
{
    std::array<char, PATH_MAX + 1> target{};
    const ssize_t length = ::readlinkat(source.folder, source.name, target.data(), target.size() - 1);
    if (length < 0)
        return failure(Failure::lastSystem());
    target[static_cast<std::size_t>(length)] = '\0';
    if (::symlinkat(target.data(), destination.folder, destination.name) != 0) {
        if (errno == EPERM || errno == ENOTSUP || errno == ENOSYS)
            return failure(Failure{QStringLiteral("Das Ziel kann keine Verknüpfungen speichern."),
                                   std::make_error_code(std::errc::not_supported)});
        return failure(Failure::lastSystem());
    }
    const struct stat made = TRY(statusOf(destination));
    madeEntry(destination, made);
    takeDown(destination, original, MetadataMark(original.status).number());
    TRY(m_metadata.applyToLink(original.status, destination, made));
    m_pulse.addFile();
    return {};
}

Result<void> CopyTree::enterFolder(NameIn source, NameIn destination)
{
    Descriptor original = TRY(openFolder(source));
    const SourceStatus seen = TRY(SourceStatus::ofOpen(original.number()));
    const struct stat &status = seen.status;
    // Through a mount a folder may contain itself or its copy.
    if (m_sources.contains(status) || m_destinations.contains(status))
        return failure(QStringLiteral("Der Ordner enthält sich selbst."));
    std::vector<ListedName> entries = TRY(listFolder(original.number(), m_options.control));
    struct stat made{};
    Descriptor copy = TRY(createFolder(destination, made));
    if (atTop())
        m_top = TRY(openFolderPlace(NameIn{copy.number(), "."}));
    const std::uint64_t path = OwnEntries::pathMark(atTop() ? 0 : m_levels.back().path, destination.name);
    m_sources.enter(std::move(original), status);
    m_destinations.enter(std::move(copy), made);
    m_levels.push_back({source.name, path, seen, std::move(entries)});
    return {};
}

/// Sets a folder's permissions and times after its content is complete, which would change them.
Result<void> CopyTree::leaveFolder()
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    const Descriptor original = TRY(m_sources.leave());
    const Descriptor copy = TRY(m_destinations.leave());
    const struct stat made = TRY(statusOf({copy.number(), "."}));
    const auto applied = m_metadata.apply(original.number(), left.source.status, copy.number(), made);
    if (applied)
        takeDownAt(left.path, left.source, *applied);
    else
        return failure(atTop() ? applied.error() : named(applied.error(), left.name));
    return {};
}

Result<Descriptor> CopyTree::createFile(NameIn destination, struct stat &made)
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
    madeEntry(destination, made);
    if (atTop())
        m_metadata.dropInheritedAccess(number);
    return file;
}

Result<Descriptor> CopyTree::createFolder(NameIn destination, struct stat &made)
{
    if (::mkdirat(destination.folder, destination.name, S_IRWXU) != 0)
        return failure(Failure::lastSystem());
    auto folder = openFolder(destination);
    auto status = folder ? statusOf({folder->number(), "."}) : Result<struct stat>(failure(folder.error()));
    if (!status) {
        ::unlinkat(destination.folder, destination.name, AT_REMOVEDIR);
        return failure(status.error());
    }
    made = *status;
    madeEntry(destination, made);
    if (atTop())
        m_metadata.dropInheritedAccess(folder->number());
    return folder;
}

/// `entry` is in the copy, whose paths identify entries.
void CopyTree::takeDown(NameIn entry, const SourceStatus &source, std::uint64_t mark)
{
    takeDownAt(OwnEntries::pathMark(atTop() ? 0 : m_levels.back().path, entry.name), source, mark);
}

void CopyTree::takeDownAt(std::uint64_t path, const SourceStatus &source, std::uint64_t mark)
{
    if (m_options.copied)
        m_options.copied->add(path, source, mark);
}

void CopyTree::madeEntry(NameIn entry, const struct stat &made)
{
    m_made.add(OwnEntries::pathMark(atTop() ? 0 : m_levels.back().path, entry.name), made.st_ino);
}

} // namespace brellin

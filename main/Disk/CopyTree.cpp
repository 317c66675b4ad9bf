#include "Disk/CopyTree.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace brellin {

CopyTree::CopyTree(Location source, int folder, const CopyOptions &options)
    : m_source(std::move(source))
    , m_options(options)
    , m_pulse(options, [this] { return current(); })
    , m_common{m_pulse, CopyRecord(knownBy(folder), options.copied)}
    , m_file(m_common)
    , m_crew(m_common)
{
}

Result<CopyReport> CopyTree::run(NameIn source, NameIn destination)
{
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
    m_crew.stop();
    // A failure of the helper cancels this thread; report that failure.
    if (!outcome && outcome.error().isCancelled() && m_crew.failure())
        outcome = failure(*m_crew.failure());
    m_common.record.sort();
    if (outcome) {
        const CopyProgress done = m_pulse.finished();
        return CopyReport{m_file.metadata().notKept(), done.bytes, done.files};
    }
    return failure(takeBack(destination, outcome.error()));
}

Failure CopyTree::takeBack(NameIn destination, Failure why)
{
    if (m_common.record.made().empty())
        return why;
    // Free descriptors, which removing the copy needs if they have run out.
    m_sources = CopyTreeFolders();
    m_destinations = CopyTreeFolders();
    m_common.top.reset();
    if (!removeTree(destination, &m_common.record.made()))
        why.message += QStringLiteral(" Ein Rest der Kopie ließ sich nicht entfernen.");
    return why;
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
        if (entry.type == DT_DIR)
            TRY(m_crew.makeRoom(m_file));
        const auto copied = copyEntry({m_sources.current(), name}, entry.type, {m_destinations.current(), name});
        if (!copied)
            return failure(namedFailure(copied.error(), relativeFolder(), entry.name));
    }
    return m_crew.finish(m_file);
}

/// `type` is from the folder listing and saves a call; the opened entry is checked again.
Result<void> CopyTree::copyEntry(NameIn source, unsigned char type, NameIn destination)
{
    if (type == DT_REG)
        return m_file.run(source, destination, place());
    if (type == DT_DIR)
        return enterFolder(source, destination);
    const struct stat status = TRY(statusOf(source));
    if (S_ISREG(status.st_mode))
        return m_file.run(source, destination, place());
    if (S_ISDIR(status.st_mode))
        return enterFolder(source, destination);
    if (S_ISLNK(status.st_mode))
        return copyLink(source, SourceStatus::of(status), destination);
    return failure(notOrdinary());
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
    const std::uint64_t path = OwnEntries::pathMark(place().path, destination.name);
    m_common.record.made(path, made.st_ino);
    m_common.record.copied(path, original, MetadataMark(original.status).number());
    TRY(m_file.metadata().applyToLink(original.status, destination, made));
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
        m_common.top = TRY(openFolderPlace(NameIn{copy.number(), "."}));
    const std::uint64_t path = OwnEntries::pathMark(place().path, destination.name);
    m_sources.enter(std::move(original), status);
    m_destinations.enter(std::move(copy), made);
    m_levels.push_back({source.name, path, seen, std::move(entries)});
    handOverFiles();
    return {};
}

void CopyTree::handOverFiles()
{
    Level &level = m_levels.back();
    const auto isFile = [](const ListedName &entry) { return entry.type == DT_REG; };
    if (!m_crew.wants(static_cast<std::size_t>(std::ranges::count_if(level.entries, isFile))))
        return;
    auto source = openFolder({m_sources.current(), "."});
    auto destination = openFolder({m_destinations.current(), "."});
    if (!source || !destination)
        return; // out of descriptors: they are copied as they come
    auto folder = std::make_shared<CopyFolder>(*std::move(source), *std::move(destination), level.source, level.path,
                                               relativeFolder());
    for (ListedName &entry : level.entries) {
        if (isFile(entry))
            folder->files.push_back(std::move(entry.name));
    }
    std::erase_if(level.entries, isFile);
    level.handedOver = folder->pending;
    m_crew.add(std::move(folder));
}

Result<void> CopyTree::leaveFolder()
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    const Descriptor original = TRY(m_sources.leave());
    const Descriptor copy = TRY(m_destinations.leave());
    if (left.handedOver && left.handedOver->fetch_sub(1) != 1)
        return {};
    const auto closed = m_file.closeFolder(original.number(), copy.number(), left.source, left.path);
    if (!closed)
        return failure(atTop() ? closed.error() : namedFailure(closed.error(), relativeFolder(), left.name));
    return {};
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
    m_common.record.made(OwnEntries::pathMark(place().path, destination.name), made.st_ino);
    if (atTop())
        CopyMetadata::dropInheritedAccess(folder->number());
    return folder;
}

CopyPlace CopyTree::place() const
{
    return {atTop() ? 0 : m_levels.back().path, atTop(), [this] { return relativeFolder(); }};
}

/// Path below the top; empty directly in it.
std::string CopyTree::relativeFolder() const
{
    std::string path;
    for (std::size_t i = 1; i < m_levels.size(); ++i)
        path += (i > 1 ? "/" : "") + m_levels[i].name;
    return path;
}

Location CopyTree::current() const
{
    if (m_crew.current())
        return m_source / *m_crew.current();
    if (atTop())
        return m_source;
    Location location = m_source / relativeFolder();
    const Level &level = m_levels.back();
    if (level.next > 0)
        location /= level.entries[level.next - 1].name;
    return location;
}

} // namespace brellin

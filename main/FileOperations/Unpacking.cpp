#include "FileOperations/Unpacking.h"

#include "Base/German.h"
#include "FileOperations/ArchiveReader.h"
#include "FileOperations/HiddenWork.h"
#include "FileOperations/UnpackedTree.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <string>
#include <string_view>

namespace brellin {

namespace {

/// Bytes kept free on the volume.
constexpr std::int64_t reserve = 64'000'000;
/// Bytes written between two checks of the free space.
constexpr std::int64_t lookEvery = 16'000'000;

constexpr std::array<std::string_view, 15> endings = {".zip",  ".tar",     ".tar.gz",   ".tgz", ".tar.bz2",
                                                      ".tbz2", ".tbz",     ".tar.xz",   ".txz", ".tar.zst",
                                                      ".tzst", ".tar.lz4", ".tar.lzma", ".tlz", ".tar.z"};

std::string_view endingOf(std::string_view name)
{
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](unsigned char letter) { return std::tolower(letter); });
    // The longest match: ".tar.gz" rather than ".gz".
    std::string_view found;
    for (const std::string_view ending : endings) {
        if (lower.size() > ending.size() && lower.ends_with(ending) && ending.size() > found.size())
            found = ending;
    }
    return found;
}

/// Checks the cancel flag at every write, and the free space regularly.
class SpaceWatch {
public:
    SpaceWatch(Location folder, const Volumes &volumes, const JobControl &control)
        : m_folder(std::move(folder))
        , m_volumes(volumes)
        , m_control(control)
    {
    }

    Result<void> mayWrite(std::int64_t bytes)
    {
        if (m_control.cancelled())
            return failure(Failure::cancelled());
        m_sinceLook += bytes;
        if (m_sinceLook < lookEvery)
            return {};
        m_sinceLook = 0;
        const Result<std::int64_t> free = m_volumes.available(m_folder);
        return free && *free < reserve ? failure(Failure::system(ENOSPC)) : Result<void>();
    }

private:
    const Location m_folder;
    const Volumes &m_volumes;
    const JobControl &m_control;
    std::int64_t m_sinceLook = lookEvery; ///< check at the first write
};

QStringList remarksOn(const ArchiveReader &reader, const UnpackedTree &tree)
{
    QStringList remarks;
    if (reader.isCut())
        remarks << QStringLiteral("Das Archiv ist abgeschnitten: Sein Ende fehlt, und vielleicht mehr.");
    if (tree.separated() > 0)
        remarks << QStringLiteral("Dieser Datenträger kennt keine harten Links: %1 eine eigene Kopie.")
                       .arg(counted(tree.separated(), QStringLiteral("Eintrag wurde"),
                                    QStringLiteral("Einträge wurden je")));
    return remarks;
}

Result<Unpacked> unpackInto(const Location &folder, ArchiveReader &reader, SpaceWatch &space, JobControl &control)
{
    UnpackedTree tree = TRY(UnpackedTree::in(folder, [&space](std::int64_t bytes) { return space.mayWrite(bytes); }));
    control.setTotal(reader.bytesInAll());
    for (;;) {
        if (control.cancelled())
            return failure(Failure::cancelled());
        const std::optional<ArchivedEntry> entry = TRY(reader.next());
        if (!entry)
            break;
        control.setDetail(shown(std::string_view(entry->path)));
        TRY(tree.add(*entry, reader));
        control.setDone(std::min(reader.bytesRead(), reader.bytesInAll()));
    }
    TRY(tree.finish());
    return Unpacked{{}, tree.refused(), remarksOn(reader, tree)};
}

/// Fails if the folder cannot be listed completely, since entries missed here would be removed with it.
Result<std::vector<Location>> entriesOf(const Location &folder)
{
    std::vector<Location> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    if (error)
        return failure(Failure::system(error.value()));
    return entries;
}

Failure nothingIn(const QStringList &refused)
{
    if (refused.isEmpty())
        return {QStringLiteral("Das Archiv ist leer."), {}};
    return {QStringLiteral("Aus dem Archiv lässt sich nichts entpacken. ") + refused.join(u'\n'), {}};
}

} // namespace

bool isUnpackable(std::string_view name)
{
    return !endingOf(name).empty();
}

Result<ArchiveSummary> summarise(const Location &archive, const Location &reader, const JobControl &control)
{
    ArchiveReader reading = TRY(ArchiveReader::open(reader, archive, ArchiveReader::Wanted::Names, control));
    ArchiveSummary summary;
    for (;;) {
        const std::optional<ArchivedEntry> entry = TRY(reading.next());
        if (!entry)
            return summary;
        ++summary.entries;
        const std::int64_t size = std::max<std::int64_t>(entry->size.value_or(0), 0);
        const std::int64_t room = std::numeric_limits<std::int64_t>::max() - summary.bytes;
        summary.bytes += std::min(size, room);
    }
}

Result<Unpacked> unpack(const Location &archive, const Location &folder, const UnpackingServices &services,
                        JobControl &control)
{
    FileActions &files = services.files;
    const std::string name = archive.filename().native();
    ArchiveReader reader = TRY(ArchiveReader::open(services.reader, archive, ArchiveReader::Wanted::Contents, control));
    SpaceWatch space(folder, services.volumes, control);
    Unpacked unpacked;
    QStringList notes;
    const auto unpackHidden = [&](const HiddenFolder &hidden) -> Result<Location> {
        unpacked = TRY(unpackInto(hidden.location(), reader, space, control));
        const std::vector<Location> tops = TRY(entriesOf(hidden.location()));
        if (tops.empty())
            return failure(nothingIn(unpacked.refused));
        const Location own = folder / name.substr(0, name.size() - endingOf(name).size());
        return tops.size() == 1 ? hidden.moveOut(tops.front(), folder / tops.front().filename())
                                : hidden.moveOut(hidden.location(), own);
    };
    unpacked.place = TRY(workHidden(folder, unpackingPrefix, files, services.logs, unpackHidden, notes));
    unpacked.notes << notes;
    return unpacked;
}

} // namespace brellin

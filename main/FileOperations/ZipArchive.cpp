#include "FileOperations/ZipArchive.h"

#include "FileOperations/ArchiveSources.h"
#include "FileOperations/HiddenWork.h"

#include <algorithm>

namespace brellin {

namespace {

/// Effectively no limit: packing a large folder takes long.
constexpr auto longestRun = std::chrono::hours(24 * 7);

/// zip's exit code if files could not be read.
constexpr int someUnreadable = 18;

/// For zip "-" means standard input, and "@" names from there.
std::string asArgument(const std::string &name)
{
    return name == "-" || name == "@" ? "./" + name : name;
}

ProcessRequest requestFor(const Location &archive, const std::vector<Location> &entries, JobControl &control)
{
    ProcessRequest request;
    request.program = "zip";
    request.arguments = {"-r", "-y", "-q", archive.native(), "--"};
    for (const Location &entry : entries)
        request.arguments.push_back(asArgument(entry.filename().native()));
    request.workingFolder = entries.front().parent_path();
    request.timeout = longestRun;
    request.hasRead = [&control](std::int64_t bytes) { control.setDone(std::min<qint64>(bytes, control.total())); };
    return request;
}

Failure failureOf(const ProcessOutput &output)
{
    const QString words = QString::fromUtf8(output.errors + output.output).simplified().left(500);
    if (output.exitCode == someUnreadable)
        return {QStringLiteral("Nicht alles ließ sich lesen; es wurde kein Archiv angelegt. (%1)").arg(words), {}};
    return {QStringLiteral("Das Archiv ließ sich nicht anlegen. (%1)").arg(words), {}};
}

} // namespace

std::string zipName(const std::vector<Location> &entries)
{
    return entries.size() == 1 ? entries.front().filename().native() + ".zip" : "Archiv.zip";
}

Result<Packed> compress(const std::vector<Location> &entries, const Location &into, FileActions &files,
                        ProcessRunner &processes, JobControl &control, const Location &logs)
{
    if (entries.empty())
        return failure(QStringLiteral("Es ist nichts ausgewählt."));
    const Location folder = entries.front().parent_path();
    const bool together =
        std::ranges::all_of(entries, [&](const Location &entry) { return entry.parent_path() == folder; });
    if (!together)
        return failure(QStringLiteral("Für ein Archiv müssen alle Elemente im selben Ordner liegen."));
    if (std::ranges::any_of(entries, [&](const Location &entry) { return isAtOrBelow(into, entry); }))
        return failure(QStringLiteral("Das Archiv würde in sich selbst liegen."));
    const ArchiveSources sources(entries, control);
    control.setTotal(sources.bytes());

    Packed packed;
    const auto pack = [&](const HiddenFolder &hidden) -> Result<Location> {
        const Location growing = hidden.location() / "Archiv.zip";
        const ProcessOutput output = TRY(processes.run(requestFor(growing, entries, control), &control));
        if (output.exitCode != 0)
            return failure(failureOf(output));
        packed.notes << sources.missingOrChanged(control);
        if (control.cancelled())
            return failure(Failure::cancelled());
        return hidden.moveOut(growing, into / zipName(entries));
    };
    packed.place = TRY(workHidden(into, packingPrefix, files, logs, pack, packed.notes));
    return packed;
}

} // namespace brellin

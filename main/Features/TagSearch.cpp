#include "Features/TagSearch.h"

#include "Disk/MountTable.h"
#include "Disk/UnreadableFolders.h"
#include "Disk/Walk.h"
#include "Features/FileTags.h"

#include <QByteArrayList>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace brellin {

namespace {

/// The folders to skip, by path.
std::set<std::string, std::less<>> closedFolders(const std::vector<Location> &leftOut)
{
    std::set<std::string, std::less<>> closed;
    for (const Location &folder : leftOut)
        closed.insert(standardised(folder).native());
    for (const Mount &mount : currentMountTable()) {
        if (isNetworkFileSystem(mount.fileSystem))
            closed.insert(mount.point);
    }
    return closed;
}

/// Splits output into paths; tolerates missing final line breaks and empty lines.
std::vector<Location> pathsIn(const QByteArray &output)
{
    std::vector<Location> paths;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            paths.emplace_back(line.toStdString());
    }
    return paths;
}

/// Quotes a string for the index's query language.
QString quoted(const QString &text)
{
    QString inner = text;
    inner.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    return u'"' + inner + u'"';
}

} // namespace

TagSearch::~TagSearch() = default;

WalkTagSearch::WalkTagSearch(std::vector<Location> leftOut) : m_leftOut(std::move(leftOut)) {}

Result<TaggedEntries> WalkTagSearch::find(const QString &tag, const Location &scope, const JobControl &control,
                                          const Found &found) const
{
    const auto closed = closedFolders(m_leftOut);
    std::vector<std::vector<Location>> parts(static_cast<std::size_t>(walkThreads()));
    const auto visit = [&](const WalkEntry &entry, int thread) {
        if (entry.attributes.isFolder() || entry.attributes.isFile()) {
            Location place = entry.location();
            if (entry.attributes.isFolder() && closed.contains(place.native()))
                return WalkStep::SkipFolder;
            if (FileTags::holdsTag(FileTags::rawTags(place), tag)) {
                if (found)
                    found(place);
                parts[static_cast<std::size_t>(thread)].push_back(std::move(place));
            }
        }
        return WalkStep::Continue;
    };
    const WalkOutcome walked = TRY(walkParallel(scope, WalkOptions{}, visit, &control));
    TaggedEntries all;
    addUnreadable(all.unreadable, walked.unreadable);
    for (std::vector<Location> &part : parts)
        std::ranges::move(part, std::back_inserter(all.entries));
    std::ranges::sort(all.entries, {}, [](const Location &place) -> const std::string & { return place.native(); });
    return all;
}

Result<TaggedEntries> MdfindTagSearch::find(const QString &tag, const Location &scope, const JobControl &control,
                                            const Found &) const
{
    QString query = QStringLiteral("kMDItemUserTags == ") + quoted(tag);
    if (const QString english = FileTags::english(tag); !english.isEmpty() && english != tag)
        query += QStringLiteral(" || kMDItemUserTags == ") + quoted(english);
    ProcessRequest request;
    request.program = "/usr/bin/mdfind";
    request.arguments = {"-onlyin", scope.native(), query.toStdString()};
    const ProcessOutput done = TRY(m_processes.run(request, &control));
    if (done.exitCode != 0)
        return failure(QStringLiteral("Die Suche nach Markierungen ist fehlgeschlagen."));
    std::vector<Location> found = pathsIn(done.output);
    std::ranges::sort(found, {}, [](const Location &place) -> const std::string & { return place.native(); });
    return TaggedEntries{std::move(found), {}};
}

} // namespace brellin

#include "ContentView/EntryChange.h"

#include "Disk/FreeName.h"

namespace brellin {

namespace {

const QString systemRefusal = QStringLiteral("Orte des Systems werden nicht verändert.");
/// Limits retries when other programs keep taking the free name first.
constexpr int mostAttempts = 100;

} // namespace

EntryChange createFolder(const Location &wanted, FileActions &files, const MayChange &mayChange)
{
    EntryChange made{{}, unique(wanted), {}};
    if (mayChange && !mayChange(wanted)) {
        made.outcome = failure(systemRefusal);
        return made;
    }
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        made.to = unique(wanted);
        made.outcome = files.createFolder(made.to);
        if (made.outcome || !made.outcome.error().is(std::errc::file_exists))
            break;
    }
    return made;
}

EntryChange renameEntry(const Location &from, const Location &to, FileActions &files, const MayChange &mayChange)
{
    if (mayChange && !(mayChange(from) && mayChange(to)))
        return {from, to, failure(systemRefusal)};
    return {from, to, files.rename(from, to)};
}

} // namespace brellin

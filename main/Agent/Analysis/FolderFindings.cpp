#include "Agent/Analysis/FolderFindings.h"

#include "Agent/Analysis/AccessTimes.h"
#include "Agent/Analysis/AnalysisReasons.h"
#include "Agent/Analysis/FileUse.h"
#include "Agent/Analysis/FolderNames.h"
#include "Base/German.h"

#include <algorithm>

namespace brellin {

namespace {

constexpr int neverOpenedDays = 90;

bool isFoundInside(const AnalysisScope &scope, std::size_t folder, const std::vector<FolderFinding> &found)
{
    return std::ranges::any_of(found,
                               [&](const FolderFinding &one) { return scope.survey().isAtOrIn(folder, one.folder); });
}

/// The archive group as the user spells it; nullopt if there is none.
std::optional<QString> archiveGroup(const FolderProfile &settings)
{
    const auto group = std::ranges::find(settings.groups, u"archiv"_qs, folded);
    return group != settings.groups.end() ? std::optional(*group) : std::nullopt;
}

std::optional<FolderFinding> neverOpened(const AnalysisScope &scope, std::size_t number, Instant now)
{
    const FolderUsage &usage = scope.folder(number).usage;
    if (!usage.neverOpened() || !usage.settledSince)
        return std::nullopt;
    if (!isLongerAgo(*usage.settledSince, neverOpenedDays, now))
        return std::nullopt;
    return FolderFinding{number, neverOpenedReason(usage, daysBetween(*usage.settledSince, now)), {}, {}};
}

std::optional<FolderFinding> longUnused(const AnalysisScope &scope, std::size_t number, Instant now)
{
    const SurveyedFolder &folder = scope.folder(number);
    const FolderProfile &settings = scope.protection().settings();
    const std::optional<QString> archive = archiveGroup(settings);
    if (!folder.usage.lastUse || !folder.usage.newest)
        return std::nullopt;
    // Without a profile no limit was chosen, and a month without a look does not make an album old. Symlinks in the
    // folder may point to neighbours, which stay, and would break.
    if (!scope.protection().hasProfile() || !scope.protection().mayTidy() || !archive ||
        settings.archiveAfterDays <= 0 || !isLongerAgo(*folder.usage.lastUse, settings.archiveAfterDays, now) ||
        folder.usage.links > 0)
        return std::nullopt;
    const Location name = folder.location.filename();
    const std::string year = QString::number(localDay(*folder.usage.newest).year()).toStdString();
    return FolderFinding{
        number,
        unusedReason(folder.location, daysBetween(*folder.usage.lastUse, now), settings.archiveAfterDays),
        scope.root() / locationFromText(*archive) / year / name,
        {}};
}

} // namespace

std::vector<FolderFinding> removableFolders(const AnalysisScope &scope, int maxDepth)
{
    std::vector<FolderFinding> found;
    const std::vector<SurveyedFolder> &folders = scope.survey().folders();
    // Outer folders come first, so that nested ones are skipped.
    for (std::size_t number = 1; number < folders.size(); ++number) {
        const SurveyedFolder &folder = folders[number];
        if (folder.level > maxDepth || !isRemovableName(folder.location.filename().native()) ||
            !scope.mayGoWhole(number) || scope.protection().isCollected(folder.location) ||
            isFoundInside(scope, number, found))
            continue;
        found.push_back({number, backupReason(folder.usage, folder.state.modified), {}, {}});
    }
    return found;
}

std::vector<FolderFinding> unusedFolders(const AnalysisScope &scope, Instant now)
{
    std::vector<FolderFinding> found;
    if (!keepsAccessTimes(scope.root()))
        return found;
    const std::vector<SurveyedFolder> &folders = scope.survey().folders();
    for (std::size_t number = 1; number < folders.size(); ++number) {
        const SurveyedFolder &folder = folders[number];
        if (folder.level != 1 || folder.usage.visibleFiles == 0 || !scope.mayGoWhole(number) ||
            scope.protection().isCollected(folder.location))
            continue;
        std::optional<FolderFinding> finding = neverOpened(scope, number, now);
        if (!finding)
            finding = longUnused(scope, number, now);
        if (finding)
            found.push_back(*std::move(finding));
    }
    return found;
}

} // namespace brellin

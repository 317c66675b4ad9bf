#include "Agent/Analysis/DuplicateFolders.h"

#include "Agent/Analysis/FolderFingerprint.h"
#include "Agent/Analysis/FolderNames.h"
#include "Agent/Duplicates/DuplicateReasons.h"
#include "Runs/SameContent.h"

#include <algorithm>
#include <map>

namespace brellin {

namespace {

using Numbers = std::vector<std::size_t>;

/// Cheap key to group folders before comparing listings; large ones first, so that of nested equal folders the outer
/// ones are found.
struct Bulk {
    std::int64_t files = 0;
    std::int64_t bytes = 0;

    auto operator<=>(const Bulk &) const = default;
};

class Search {
public:
    Search(const AnalysisScope &scope, const std::vector<FolderFinding> &removable, JobControl &control)
        : m_scope(scope)
        , m_removable(removable)
        , m_control(control)
    {
    }

    Result<std::vector<FolderFinding>> run();

private:
    bool isCandidate(std::size_t number) const;
    bool isRemovable(std::size_t number) const;
    bool isKeptRather(std::size_t a, std::size_t b) const;
    std::vector<Numbers> groups() const;
    Result<void> compare(Numbers group);
    bool isInsideFound(std::size_t number) const;
    bool isTiedToKept(std::size_t number) const;

    const AnalysisScope &m_scope;
    const std::vector<FolderFinding> &m_removable;
    JobControl &m_control;
    std::vector<FolderFinding> m_found;
    Numbers m_kept;
};

bool Search::isRemovable(std::size_t number) const
{
    return std::ranges::find(m_removable, number, &FolderFinding::folder) != m_removable.end();
}

bool Search::isCandidate(std::size_t number) const
{
    const SurveyedFolder &folder = m_scope.folder(number);
    // Folders with only empty or hidden files may be equal without being copies.
    if (folder.level == 0 || !m_scope.isOpen(number) || !folder.complete || folder.usage.bytes == 0 ||
        folder.usage.visibleFiles == 0 || folder.usage.files >= fingerprintFiles)
        return false;
    return std::ranges::none_of(m_removable, [&](const FolderFinding &one) {
        return one.folder != number && m_scope.survey().isAtOrIn(number, one.folder);
    });
}

bool Search::isKeptRather(std::size_t a, std::size_t b) const
{
    const auto rank = [this](std::size_t number) {
        const SurveyedFolder &folder = m_scope.folder(number);
        // A missing creation time counts as newest.
        return std::tuple(m_scope.mayGoWhole(number), isRemovable(number),
                          isBackupLike(m_scope.relative(folder.location)), folder.created.value_or(Instant::max()),
                          shown(folder.location).size(), folder.location);
    };
    return rank(a) < rank(b);
}

/// Groups of folders with equal listings, the one to keep first.
std::vector<Numbers> Search::groups() const
{
    std::map<Bulk, Numbers, std::greater<>> bulks;
    for (std::size_t number = 1; number < m_scope.survey().folders().size(); ++number) {
        const FolderUsage &usage = m_scope.folder(number).usage;
        if (isCandidate(number))
            bulks[{usage.files, usage.bytes}].push_back(number);
    }
    std::vector<Numbers> groups;
    for (const auto &[bulk, numbers] : bulks) {
        if (numbers.size() < 2)
            continue;
        std::map<QByteArray, Numbers> equal;
        for (const std::size_t number : numbers) {
            if (const std::optional<QByteArray> print = fingerprint(m_scope.folder(number).location, &m_control))
                equal[*print].push_back(number);
        }
        std::vector<Numbers> sorted;
        sorted.reserve(equal.size());
        for (auto &[print, members] : equal)
            sorted.push_back(std::move(members));
        std::ranges::sort(sorted, {}, [&](const Numbers &one) { return m_scope.folder(one.front()).level; });
        for (Numbers &members : sorted) {
            std::ranges::sort(members, [&](std::size_t a, std::size_t b) { return isKeptRather(a, b); });
            groups.push_back(std::move(members));
        }
    }
    return groups;
}

bool Search::isInsideFound(std::size_t number) const
{
    return std::ranges::any_of(m_found,
                               [&](const FolderFinding &one) { return m_scope.survey().isAtOrIn(number, one.folder); });
}

/// A folder that is kept for another must stay unchanged, and so must everything inside and above it.
bool Search::isTiedToKept(std::size_t number) const
{
    return std::ranges::any_of(m_kept, [&](std::size_t kept) {
        return m_scope.survey().isAtOrIn(number, kept) || m_scope.survey().isAtOrIn(kept, number);
    });
}

/// Equal listings may have different contents: keeps one folder of each content.
Result<void> Search::compare(Numbers group)
{
    std::erase_if(group, [this](std::size_t number) { return isInsideFound(number); });
    while (group.size() > 1) {
        const std::size_t kept = group.front();
        const Location &keptFolder = m_scope.folder(kept).location;
        Numbers others;
        for (const std::size_t number : group) {
            const Location &folder = m_scope.folder(number).location;
            if (m_control.cancelled())
                return failure(Failure::cancelled());
            if (number == kept)
                continue;
            m_control.setDetail(shownName(folder));
            if (!haveSameContent(folder, keptFolder, &m_control)) {
                others.push_back(number);
            } else if (m_scope.mayGoWhole(number) && !isTiedToKept(number)) {
                m_found.push_back({number, sameContentReason(keptFolder), {}, keptFolder});
                m_kept.push_back(kept);
            }
        }
        group = std::move(others);
    }
    return {};
}

Result<std::vector<FolderFinding>> Search::run()
{
    for (Numbers &group : groups())
        TRY(compare(std::move(group)));
    if (m_control.cancelled())
        return failure(Failure::cancelled());
    return std::move(m_found);
}

} // namespace

Result<std::vector<FolderFinding>> duplicateFolders(const AnalysisScope &scope,
                                                    const std::vector<FolderFinding> &removable, JobControl &control)
{
    return Search(scope, removable, control).run();
}

} // namespace brellin

#include "Agent/Analysis/DuplicateDocuments.h"

#include <algorithm>

namespace brellin {

namespace {

struct Copy {
    Location location;
    FileState state;
};

bool takesPart(const Location &file, const AnalysisScope &scope, const std::vector<FolderFinding> &whole)
{
    const std::optional<std::size_t> folder = scope.folderOf(file);
    return folder && scope.isEntered(*folder) && std::ranges::none_of(whole, [&](const FolderFinding &one) {
               return scope.survey().isAtOrIn(*folder, one.folder);
           });
}

void addPairs(std::vector<DuplicatePair> &chosen, const std::vector<Copy> &copies, const AnalysisScope &scope,
              const LaterTrash &later)
{
    for (std::size_t i = 1; i < copies.size(); ++i) {
        if (scope.mayGo(copies[i].location) && !later.endangers(copies.front().state, copies[i].state))
            chosen.push_back({.duplicate = copies[i].location,
                              .kept = copies.front().location,
                              .duplicateState = copies[i].state,
                              .keptState = copies.front().state});
    }
}

} // namespace

std::vector<DuplicatePair> proposedPairs(const std::vector<DuplicatePair> &pairs, const AnalysisScope &scope,
                                         const std::vector<FolderFinding> &whole, const LaterTrash &later)
{
    std::vector<DuplicatePair> chosen;
    // The pairs of one kept file are adjacent.
    for (auto first = pairs.begin(); first != pairs.end();) {
        const auto end = std::find_if(first, pairs.end(), [&](const auto &pair) { return pair.kept != first->kept; });
        std::vector<Copy> copies{{first->kept, first->keptState}};
        for (auto pair = first; pair != end; ++pair)
            copies.push_back({pair->duplicate, pair->duplicateState});
        std::erase_if(copies, [&](const Copy &copy) { return !takesPart(copy.location, scope, whole); });
        addPairs(chosen, copies, scope, later);
        first = end;
    }
    std::ranges::stable_sort(chosen, {}, &DuplicatePair::kept);
    return chosen;
}

} // namespace brellin

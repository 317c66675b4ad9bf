#include "Agent/Duplicates/LaterTrash.h"

#include "Agent/Duplicates/LaterMoves.h"
#include "Agent/Rules/RuleTargets.h"
#include "Guard/FolderEntry.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

namespace brellin {

namespace {

bool trashes(const CleanupRule &rule)
{
    return rule.action == RuleAction::Trash;
}

std::vector<Location> filesOf(const std::vector<DuplicatePair> &pairs)
{
    std::vector<Location> files;
    for (const DuplicatePair &pair : pairs) {
        files.push_back(pair.kept);
        files.push_back(pair.duplicate);
    }
    return files;
}

/// The folders of some files, and all folders above those.
class FoldersOfFiles {
public:
    explicit FoldersOfFiles(const std::vector<Location> &files)
    {
        std::set<std::string, std::less<>> named;
        for (const Location &file : files) {
            const std::string_view path = file.native();
            const std::string_view folder = path.substr(0, path.rfind('/'));
            if (named.contains(folder))
                continue;
            named.emplace(folder);
            add(file);
        }
    }

    bool reachedBy(const CleanupRule &rule, const Location &home) const
    {
        const std::optional<Location> source = rulePath(rule.sourcePath, home);
        const std::optional<Location> resolved = source ? resolvedLocation(*source) : std::nullopt;
        const std::optional<FileIdentity> folder = resolved ? identityOf(*resolved) : std::nullopt;
        return folder && (m_direct.contains(*folder) || (rule.includeSubfolders && m_above.contains(*folder)));
    }

private:
    void add(const Location &file)
    {
        const std::vector<FileIdentity> folders = foldersAbove(realEntry(file));
        if (folders.empty())
            return;
        m_direct.insert(folders.front());
        m_above.insert(folders.begin() + 1, folders.end());
    }

    std::set<FileIdentity> m_direct;
    std::set<FileIdentity> m_above;
};

} // namespace

std::vector<CleanupRule> rulesReaching(const std::vector<CleanupRule> &rules, const std::vector<Location> &files,
                                       const Location &home)
{
    const FoldersOfFiles folders(files);
    std::vector<CleanupRule> reaching;
    std::ranges::copy_if(rules, std::back_inserter(reaching),
                         [&](const CleanupRule &rule) { return rule.enabled && folders.reachedBy(rule, home); });
    return reaching;
}

Result<LaterTrash> LaterTrash::of(const SystemLocations &locations, const RuleMatching &matching,
                                  std::vector<CleanupRule> rules, const std::vector<DuplicatePair> &pairs,
                                  const JobControl *control)
{
    LaterTrash later;
    if (pairs.empty() || std::ranges::none_of(rules, trashes))
        return later;
    later.addMoved(rules, locations.home(), pairs);
    rules = rulesReaching(rules, filesOf(pairs), locations.home());
    for (CleanupRule &rule : rules) {
        if (trashes(rule))
            rule.conditions = withoutAges(std::move(rule.conditions));
    }
    if (std::ranges::none_of(rules, trashes))
        return later;
    const RuleEvaluation taken = TRY(matching.evaluateCounting(rules, control));
    for (const Candidate &one : taken.candidates) {
        if (one.kind == AgentProposal::Kind::Trash)
            later.m_rules[one.seen.identity].insert(one.rule);
    }
    return later;
}

void LaterTrash::addMoved(const std::vector<CleanupRule> &rules, const Location &home,
                          const std::vector<DuplicatePair> &pairs)
{
    LaterMoves moves(rules, home);
    const auto note = [&](const Location &file, const FileState &state) {
        if (std::set<QUuid> trashing = moves.trashRules(file, state); !trashing.empty())
            m_rules[state.identity].merge(trashing);
    };
    for (const DuplicatePair &pair : pairs) {
        note(pair.kept, pair.keptState);
        note(pair.duplicate, pair.duplicateState);
    }
}

bool LaterTrash::endangers(const FileState &kept, const FileState &duplicate) const
{
    const auto rules = m_rules.find(kept.identity);
    if (rules == m_rules.end())
        return false;
    const auto same = m_rules.find(duplicate.identity);
    return same == m_rules.end() || !std::ranges::includes(same->second, rules->second);
}

} // namespace brellin

#include "Agent/LaterTrash.h"

#include <algorithm>

namespace brellin {

Result<LaterTrash> LaterTrash::of(const RuleMatching &matching, std::vector<CleanupRule> rules,
                                  const JobControl *control)
{
    LaterTrash later;
    bool trashes = false;
    for (CleanupRule &rule : rules) {
        if (!rule.enabled || rule.action != RuleAction::Trash)
            continue;
        trashes = true;
        std::erase_if(rule.conditions,
                      [](const RuleCondition &one) { return one.kind == ConditionKind::OlderThanDays; });
    }
    if (!trashes)
        return later;
    const RuleEvaluation taken = TRY(matching.evaluateCounting(rules, control));
    for (const Candidate &one : taken.candidates) {
        if (one.kind == AgentProposal::Kind::Trash)
            later.m_rules.emplace(one.seen.identity, one.rule);
    }
    return later;
}

bool LaterTrash::endangers(const FileState &kept, const FileState &duplicate) const
{
    const auto rule = m_rules.find(kept.identity);
    if (rule == m_rules.end())
        return false;
    const auto same = m_rules.find(duplicate.identity);
    return same == m_rules.end() || same->second != rule->second;
}

} // namespace brellin

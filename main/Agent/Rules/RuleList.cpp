#include "Agent/Rules/RuleList.h"

#include "Agent/Rules/RuleTargets.h"
#include "Guard/PathTexts.h"

#include <algorithm>

namespace brellin {

namespace {

void insertAt(std::vector<CleanupRule> &rules, CleanupRule rule, std::size_t place)
{
    rules.insert(rules.begin() + static_cast<std::ptrdiff_t>(std::min(place, rules.size())), std::move(rule));
}

} // namespace

std::vector<CleanupRule> withRule(std::vector<CleanupRule> rules, const CleanupRule &rule)
{
    const auto old = std::ranges::find(rules, rule.id, &CleanupRule::id);
    if (old != rules.end())
        *old = rule;
    else
        rules.push_back(rule);
    return rules;
}

std::vector<CleanupRule> withRuleMoved(std::vector<CleanupRule> rules, const QUuid &rule, std::size_t place)
{
    const auto found = std::ranges::find(rules, rule, &CleanupRule::id);
    if (found == rules.end())
        return rules;
    CleanupRule moved = std::move(*found);
    rules.erase(found);
    insertAt(rules, std::move(moved), place);
    return rules;
}

std::vector<CleanupRule> withRuleRestored(std::vector<CleanupRule> rules, const RemovedRule &removed)
{
    if (std::ranges::find(rules, removed.rule.id, &CleanupRule::id) == rules.end())
        insertAt(rules, removed.rule, removed.place);
    return rules;
}

CleanupRule copyOf(const CleanupRule &rule)
{
    CleanupRule copy = rule;
    copy.id = QUuid::createUuid();
    for (RuleCondition &condition : copy.conditions)
        condition.id = QUuid::createUuid();
    copy.name = QStringLiteral("Kopie von ") + rule.name;
    // It takes the same files as the original, so it stays off until it has been edited.
    copy.enabled = false;
    copy.automatic = false;
    return copy;
}

CleanupRule newRule(const Location &source)
{
    CleanupRule rule;
    rule.sourcePath = textOf(source);
    return rule;
}

QString ruleSummary(const CleanupRule &rule, const Location &home)
{
    const QString inside = rule.includeSubfolders ? QStringLiteral(" (mit Unterordnern)") : QString();
    switch (rule.action) {
    case RuleAction::Trash:
        return QStringLiteral("→ In den Papierkorb") + inside;
    case RuleAction::Rename:
        return QStringLiteral("→ Umbenennen in „") + rule.renamePattern + QStringLiteral("“") + inside;
    case RuleAction::Copy:
    case RuleAction::Move:
    case RuleAction::AiSort:
        break;
    }
    return QStringLiteral("→ ") + shownFromHome(locationFromText(rule.targetPath), home) + inside;
}

} // namespace brellin

#include "Agent/Duplicates/LaterMoves.h"

#include "Agent/Rules/RuleTargets.h"
#include "Guard/SystemLocations.h"

#include <algorithm>

namespace brellin {

namespace {

std::optional<Location> resolvedFolder(const QString &path, const Location &home)
{
    const std::optional<Location> folder = rulePath(path, home);
    return folder ? std::optional(resolvedLocation(*folder).value_or(*folder)) : std::nullopt;
}

} // namespace

bool LaterMoves::Rule::reaches(const Place &place) const
{
    if (includeSubfolders && isAtOrBelow(place.folder, source))
        return true;
    // By their texts: comparing paths takes them apart.
    const bool same = source.native() == place.folder.native();
    return place.isAbove ? !same && isAtOrBelow(source, place.folder) : same;
}

/// Whether no later rule ever gets a file of this place that meets the conditions.
bool LaterMoves::Rule::takesAlways(const Place &place) const
{
    const bool stays = target && (target->isAbove || target->folder == place.folder);
    return !waits && !place.isAbove && !stays;
}

LaterMoves::LaterMoves(const std::vector<CleanupRule> &rules, const Location &home)
{
    for (const CleanupRule &rule : rules) {
        if (rule.enabled)
            add(rule, home);
    }
}

void LaterMoves::add(const CleanupRule &rule, const Location &home)
{
    const bool moves = rule.action == RuleAction::Move || rule.action == RuleAction::AiSort;
    const std::optional<Location> source = resolvedFolder(rule.sourcePath, home);
    if (!source || (!moves && rule.action != RuleAction::Trash))
        return;
    Rule added{.id = rule.id,
               .conditions = RuleConditions(withoutAges(rule.conditions)),
               .waits = std::ranges::any_of(rule.conditions, isAge),
               .source = *source,
               .includeSubfolders = rule.includeSubfolders,
               .target = {}};
    if (moves) {
        const std::optional<Location> target = resolvedFolder(textOf(fixedPart(rule.targetPath)), home);
        if (!target)
            return;
        added.target = {*target, rule.action == RuleAction::AiSort || rule.targetPath.contains(u'{')};
    }
    m_rules.push_back(std::move(added));
}

std::set<QUuid> LaterMoves::trashRules(const Location &file, const FileState &state)
{
    const std::string name = file.filename();
    RuleFile tested;
    tested.set(name, state.size, state.modified);
    std::set<QUuid> found;
    std::set<const Rule *> followed;
    std::vector<Place> places{{m_folders.realFolder(file)}};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Place place = places[i];
        for (const Rule &rule : m_rules) {
            if (!rule.reaches(place) || !rule.conditions.hold(tested, {}))
                continue;
            if (!rule.target && i > 0)
                found.insert(rule.id);
            else if (rule.target && followed.insert(&rule).second)
                places.push_back(*rule.target);
            if (rule.takesAlways(place))
                break;
        }
    }
    return found;
}

} // namespace brellin

#include "Agent/Rules/RuleMatching.h"

#include "Agent/Rules/CandidateVerdicts.h"
#include "Agent/Rules/RuleConditions.h"
#include "Agent/Rules/RuleTargets.h"
#include "Agent/Rules/RuleWalk.h"
#include "Agent/Rules/ScriptNames.h"
#include "Disk/UnreadableFolders.h"

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace brellin {

namespace {

struct ActiveRule {
    const CleanupRule &rule;
    RuleConditions conditions;
    RuleTargets targets;
};

/// The first rule that wants a file, and the result.
struct RuledFile {
    std::size_t rule = 0;
    std::optional<Candidate> candidate; ///< none: the file stays because a script names it
    std::string file;                   ///< its resolved path; only if the source overlaps
};

/// The result of all rules for one file.
struct OneFile {
    bool lookedAt = false;
    std::optional<RuledFile> first;
};

/// The file's path with the symlinks above it resolved.
std::optional<Location> resolvedEntry(const Location &file)
{
    const std::optional<Location> folder = resolvedLocation(file.parent_path());
    return folder ? std::optional(*folder / file.filename()) : std::nullopt;
}

/// The scripts that count for a rule: those of the source folder and, if the rule includes sub-folders, those below.
class SourceScripts {
public:
    explicit SourceScripts(const RuleWalk &walk) : m_walk(walk) {}

    bool mention(const WalkedFile &file, bool subfolders)
    {
        if (m_walk.scripts.empty())
            return false;
        std::unique_ptr<ScriptNames> &names = subfolders ? m_all : m_direct;
        if (!names)
            names = std::make_unique<ScriptNames>(locations(subfolders));
        return names->mention(file.name);
    }

private:
    std::vector<Location> locations(bool subfolders) const
    {
        std::vector<Location> scripts;
        for (const WalkedName &script : m_walk.scripts) {
            if (subfolders || script.direct)
                scripts.push_back(Location(script.folder) / script.name);
        }
        return scripts;
    }

    const RuleWalk &m_walk;
    std::unique_ptr<ScriptNames> m_direct;
    std::unique_ptr<ScriptNames> m_all;
};

std::string resolvedPath(const WalkedFile &file, const RuleSource &source)
{
    return source.resolved + file.location().native().substr(source.folder.native().size());
}

/// One evaluation of all rules.
class Evaluation {
public:
    Evaluation(const std::vector<CleanupRule> &rules, const SystemLocations &locations, Instant now,
               const JobControl *control);

    Result<RuleEvaluation> run();
    /// The same for a single file, by its resolved path. Rule numbers are indices among the enabled rules.
    Result<OneFile> runFor(const Location &file);

private:
    void addToSource(std::size_t number);
    void markOverlaps();
    Result<void> evaluate(const RuleSource &source);
    std::optional<RuledFile> firstRuleOn(const WalkedFile &file, const RuleSource &source, SourceScripts &scripts);
    bool isLeftOut(const WalkedFile &file, const RuleSource &source) const;
    void noteWanted(std::optional<std::size_t> rule, const WalkedFile &file, const RuleSource &source);
    void dropTrashOfWanted();
    RuleEvaluation summary();

    const SystemLocations &m_locations;
    const Instant m_now;
    const JobControl *m_control;
    std::deque<ActiveRule> m_rules; ///< sources point into it
    std::vector<RuleSource> m_sources;
    std::vector<RuledFile> m_ruled;
    /// Files of overlapping sources that are already as a rule wants them, and the first such rule.
    std::unordered_map<std::string, std::size_t> m_wanted;
    std::string m_only; ///< only this file is evaluated; empty: all
    bool m_lookedAtOnly = false;
    std::map<std::size_t, std::int64_t> m_keptNames; ///< by rule number
    std::int64_t m_checked = 0;
    std::vector<Location> m_unreadable;
    std::unordered_set<std::size_t> m_checkedInSeveral;
};

Evaluation::Evaluation(const std::vector<CleanupRule> &rules, const SystemLocations &locations, Instant now,
                       const JobControl *control)
    : m_locations(locations)
    , m_now(now)
    , m_control(control)
{
    for (const CleanupRule &rule : rules) {
        if (!rule.enabled)
            continue;
        m_rules.push_back({rule, RuleConditions(rule.conditions), RuleTargets(rule, locations.home(), now)});
        addToSource(m_rules.size() - 1);
    }
    markOverlaps();
}

void Evaluation::addToSource(std::size_t number)
{
    const ActiveRule &active = m_rules[number];
    const std::optional<Location> folder = rulePath(active.rule.sourcePath, m_locations.home());
    if (!folder)
        return;
    auto source = std::ranges::find(m_sources, *folder, &RuleSource::folder);
    if (source == m_sources.end()) {
        const std::optional<Location> resolved = resolvedLocation(*folder);
        if (!resolved || !m_locations.isAllowed(*folder))
            return;
        source = m_sources.insert(m_sources.end(), RuleSource());
        source->folder = *folder;
        source->resolved = resolved->native();
    }
    source->includeSubfolders = source->includeSubfolders || active.rule.includeSubfolders;
    source->rules.push_back(number);
    source->filters.push_back({&active.conditions, active.rule.includeSubfolders});
}

void Evaluation::markOverlaps()
{
    for (RuleSource &a : m_sources) {
        a.overlaps = std::ranges::any_of(m_sources, [&](const RuleSource &b) {
            const std::string_view one = a.resolved;
            const std::string_view other = b.resolved;
            return &a != &b && (one == other || (b.includeSubfolders && isAtOrBelow(one, other)) ||
                                (a.includeSubfolders && isAtOrBelow(other, one)));
        });
    }
}

Result<RuleEvaluation> Evaluation::run()
{
    for (const RuleSource &source : m_sources)
        TRY(evaluate(source));
    dropTrashOfWanted();
    return summary();
}

Result<OneFile> Evaluation::runFor(const Location &file)
{
    m_only = file.native();
    for (const RuleSource &source : m_sources)
        TRY(evaluate(source));
    dropTrashOfWanted();
    OneFile result;
    result.lookedAt = m_lookedAtOnly;
    if (const auto first = std::ranges::min_element(m_ruled, {}, &RuledFile::rule); first != m_ruled.end())
        result.first = std::move(*first);
    return result;
}

Result<void> Evaluation::evaluate(const RuleSource &source)
{
    const RuleWalk walk = TRY(walkSource(source, m_locations, m_now, m_control));
    if (source.overlaps)
        m_checkedInSeveral.insert(walk.checked.begin(), walk.checked.end());
    else
        m_checked += walk.checkedFiles;
    addUnreadable(m_unreadable, walk.unreadable);
    SourceScripts scripts(walk);
    for (const WalkedFile &file : walk.files) {
        if (m_control != nullptr && m_control->cancelled())
            return failure(Failure::cancelled());
        if (isLeftOut(file, source) || walk.isAwaited(file))
            continue;
        m_lookedAtOnly = true;
        if (std::optional<RuledFile> ruled = firstRuleOn(file, source, scripts))
            m_ruled.push_back(*std::move(ruled));
    }
    return {};
}

std::optional<RuledFile> Evaluation::firstRuleOn(const WalkedFile &file, const RuleSource &source,
                                                 SourceScripts &scripts)
{
    RuleFile tested;
    tested.set(file.name, file.package ? std::nullopt : std::optional(file.state.size), file.state.modified);
    std::optional<std::size_t> wanted; ///< index of the first rule that finds the file already in place
    for (std::size_t i = file.firstFit; i < source.rules.size(); ++i) {
        const RuleFilter &filter = source.filters[i];
        const bool sees = file.direct || filter.includeSubfolders;
        if (i != file.firstFit && (!sees || !filter.conditions->hold(tested, m_now)))
            continue;
        // Never trash what is already in the place that an earlier rule wants.
        if (wanted && m_rules[source.rules[i]].rule.action == RuleAction::Trash)
            continue;
        RuledFile found{.rule = source.rules[i], .candidate = {}, .file = {}};
        if (!scripts.mention(file, filter.includeSubfolders)) {
            found.candidate = m_rules[found.rule].targets.candidate(file, source);
            if (!found.candidate) {
                m_keptNames[found.rule] += m_rules[found.rule].targets.keepsItsName(file) ? 1 : 0;
                wanted = wanted.value_or(found.rule);
                continue;
            }
        }
        if (source.overlaps)
            found.file = resolvedPath(file, source);
        noteWanted(wanted, file, source);
        return found;
    }
    noteWanted(wanted, file, source);
    return std::nullopt;
}

bool Evaluation::isLeftOut(const WalkedFile &file, const RuleSource &source) const
{
    return !m_only.empty() && resolvedPath(file, source) != m_only;
}

void Evaluation::noteWanted(std::optional<std::size_t> rule, const WalkedFile &file, const RuleSource &source)
{
    if (!rule || !source.overlaps)
        return;
    const auto [entry, isNew] = m_wanted.try_emplace(resolvedPath(file, source), *rule);
    entry->second = std::min(entry->second, *rule);
}

/// The same law across overlapping sources.
void Evaluation::dropTrashOfWanted()
{
    if (m_wanted.empty())
        return;
    std::erase_if(m_ruled, [this](const RuledFile &one) {
        const auto wanted = m_wanted.find(one.file);
        return wanted != m_wanted.end() && wanted->second < one.rule &&
               m_rules[one.rule].rule.action == RuleAction::Trash;
    });
}

/// The results in the order of the rules. With overlapping sources a file may have several; the first rule wins.
RuleEvaluation Evaluation::summary()
{
    std::unordered_map<std::string_view, std::size_t> first;
    for (const RuledFile &one : m_ruled) {
        if (one.file.empty())
            continue;
        const auto [entry, isNew] = first.try_emplace(one.file, one.rule);
        entry->second = std::min(entry->second, one.rule);
    }
    RuleEvaluation result;
    result.unreadable = std::move(m_unreadable);
    result.checkedFiles = m_checked + static_cast<std::int64_t>(m_checkedInSeveral.size());
    std::vector<std::pair<std::size_t, Candidate *>> held;
    for (RuledFile &one : m_ruled) {
        if (!one.file.empty() && first.at(one.file) != one.rule)
            continue;
        if (one.candidate)
            held.emplace_back(one.rule, &*one.candidate);
        else
            ++result.leftForScripts;
    }
    for (const auto &[rule, files] : m_keptNames)
        result.keptNames.emplace(m_rules[rule].rule.id, files);
    std::ranges::stable_sort(held, {}, [](const auto &one) { return one.first; });
    result.candidates.reserve(held.size());
    for (const auto &[rule, candidate] : held)
        result.candidates.push_back(std::move(*candidate));
    return result;
}

RuleVerdict verdictOf(const Candidate &candidate, const SystemLocations &locations,
                      const std::vector<FolderProfile> &profiles, JobControl *control)
{
    const Guard guard(locations, profiles);
    return CandidateVerdicts(locations, guard, control).of(candidate);
}

} // namespace

RuleMatching::RuleMatching(const SystemLocations &locations, const Clock &clock)
    : m_locations(locations)
    , m_clock(clock)
{
}

Result<RuleEvaluation> RuleMatching::evaluateCounting(const std::vector<CleanupRule> &rules,
                                                      const JobControl *control) const
{
    return Evaluation(rules, m_locations, m_clock.now(), control).run();
}

bool RuleMatching::matches(const CleanupRule &rule, const Location &file) const
{
    const Result<FileAttributes> attributes = readAttributes(file);
    const std::string name = file.filename().native();
    RuleFile tested;
    tested.set(name, attributes && attributes->isFile() ? std::optional(attributes->size) : std::nullopt,
               attributes ? std::optional(attributes->modified) : std::nullopt);
    return RuleConditions(rule.conditions).hold(tested, m_clock.now());
}

/// The file's resolved path if it is in the rule's folder, or below it if sub-folders are included.
std::optional<Location> RuleMatching::foundIn(const CleanupRule &rule, const Location &file) const
{
    const std::optional<Location> folder = rulePath(rule.sourcePath, m_locations.home());
    const std::optional<Location> source = folder ? resolvedLocation(*folder) : std::nullopt;
    std::optional<Location> entry = resolvedEntry(file);
    if (!source || !entry || *entry == *source)
        return std::nullopt;
    const bool direct = entry->parent_path() == *source;
    return direct || (rule.includeSubfolders && isAtOrBelow(*entry, *source)) ? entry : std::nullopt;
}

Result<RuleExplanation> RuleMatching::explain(const CleanupRule &rule, const std::vector<FolderProfile> &profiles,
                                              const Location &file, JobControl *control) const
{
    RuleExplanation result{.verdict = RuleVerdict::NothingToDo,
                           .conditions = conditionOutcomes(rule, file, m_clock.now()),
                           .candidate = {}};
    const auto because = [&](RuleVerdict verdict) {
        result.verdict = verdict;
        return result;
    };
    const std::optional<Location> source = rulePath(rule.sourcePath, m_locations.home());
    if (!rule.enabled)
        return because(RuleVerdict::RuleOff);
    if (!source || !m_locations.isAllowed(*source))
        return because(RuleVerdict::SourceRefused);
    const std::optional<Location> entry = foundIn(rule, file);
    if (!entry)
        return because(RuleVerdict::OutsideSource);
    if (!std::ranges::all_of(result.conditions, &ConditionOutcome::lets))
        return because(RuleVerdict::ConditionFails);
    OneFile found = TRY(Evaluation({rule}, m_locations, m_clock.now(), control).runFor(*entry));
    if (!found.lookedAt)
        return because(RuleVerdict::NotLookedAt);
    if (!found.first)
        return result;
    if (!found.first->candidate)
        return because(RuleVerdict::NamedByScript);
    result.verdict = verdictOf(*found.first->candidate, m_locations, profiles, control);
    if (result.verdict == RuleVerdict::Takes)
        result.candidate = std::move(found.first->candidate);
    return result;
}

Result<RuleForecast> RuleMatching::forecast(const std::vector<CleanupRule> &rules,
                                            const std::vector<FolderProfile> &profiles, const Location &file,
                                            JobControl *control) const
{
    // Evaluate only the rules whose conditions hold.
    std::vector<CleanupRule> asked;
    std::ranges::copy_if(rules, std::back_inserter(asked), [&](const CleanupRule &rule) {
        return rule.enabled && foundIn(rule, file) && matches(rule, file);
    });
    RuleForecast result;
    if (asked.empty())
        return result;
    OneFile found = TRY(Evaluation(asked, m_locations, m_clock.now(), control).runFor(*foundIn(asked.front(), file)));
    if (!found.first)
        return result;
    result.rule = asked[found.first->rule];
    if (!found.first->candidate) {
        result.verdict = RuleVerdict::NamedByScript;
        return result;
    }
    const Candidate &candidate = *found.first->candidate;
    result.verdict = verdictOf(candidate, m_locations, profiles, control);
    result.kind = candidate.kind;
    result.chosenByModel = candidate.needsAI;
    result.destination = candidate.needsAI ? candidate.aiBase : candidate.destination;
    return result;
}

} // namespace brellin

#include "Agent/Rules/RuleTrial.h"

#include "Agent/Rules/CandidateVerdicts.h"
#include "Agent/Rules/RuleList.h"
#include "Agent/Rules/RuleMatching.h"
#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Disk/UnreadableFolders.h"
#include "Guard/RulePath.h"

#include <algorithm>

namespace brellin {

namespace {

/// Limit of the list in the editor.
constexpr std::size_t mostShown = 50;

QString verbOf(RuleAction action)
{
    switch (action) {
    case RuleAction::Move:
        return QStringLiteral("verschieben");
    case RuleAction::Copy:
        return QStringLiteral("kopieren");
    case RuleAction::Rename:
        return QStringLiteral("umbenennen");
    case RuleAction::Trash:
        return QStringLiteral("in den Papierkorb legen");
    case RuleAction::AiSort:
        return QStringLiteral("mit KI einsortieren");
    }
    return {};
}

QString keptNamesText(std::int64_t count)
{
    if (count == 0)
        return {};
    return QStringLiteral(" %1 schon so, wie das Muster Namen bildet, und %2.")
        .arg(counted(count, QStringLiteral("Datei heißt"), QStringLiteral("Dateien heißen")),
             count == 1 ? QStringLiteral("bleibt") : QStringLiteral("bleiben"));
}

QString refusedText(std::int64_t count)
{
    if (count == 0)
        return {};
    return QStringLiteral(" %1, weil der Agent in ihr Ziel nie etwas legt.")
        .arg(counted(count, QStringLiteral("Datei bleibt"), QStringLiteral("Dateien bleiben")));
}

QString copiedText(std::int64_t count)
{
    if (count == 0)
        return {};
    return QStringLiteral(" Von %1 steht die Kopie schon im Ziel.")
        .arg(counted(count, QStringLiteral("Datei"), QStringLiteral("Dateien")));
}

QString notSearchedText(const std::vector<Location> &folders)
{
    return folders.empty() ? QString() : u' ' + unreadableText(folders) + u'.';
}

/// Those below the rule's folder; the other rules are evaluated along with it.
std::vector<Location> ofRule(const CleanupRule &rule, std::vector<Location> unreadable, const Location &home)
{
    const std::optional<Location> source = rulePath(rule.sourcePath, home);
    std::erase_if(unreadable, [&](const Location &folder) { return !source || !isAtOrBelow(folder, *source); });
    return unreadable;
}

} // namespace

QString TrialOutcome::text(RuleAction action) const
{
    const QString some = counted(count, QStringLiteral("Datei"), QStringLiteral("Dateien"));
    const QString taken =
        count == 0 ? QStringLiteral("Diese Regel würde jetzt keine Datei finden.")
                   : QStringLiteral("Diese Regel würde jetzt %1 %2 (%3).").arg(some, verbOf(action), sizeText(bytes));
    return taken + keptNamesText(keptNames) + refusedText(refused) + copiedText(copied) + notSearchedText(unreadable);
}

Result<TrialOutcome> tryRule(const RuleServices &services, std::vector<CleanupRule> rules, CleanupRule edited,
                             const std::vector<FolderProfile> &profiles, std::size_t most, JobControl *control)
{
    edited.enabled = true;
    const QUuid id = edited.id;
    const RuleMatching matching(services.locations, services.clock);
    RuleEvaluation found = TRY(matching.evaluateCounting(withRule(std::move(rules), edited), control));
    const Guard guard(services.locations, profiles);
    TrialOutcome outcome;
    outcome.leftForScripts = found.leftForScripts;
    outcome.unreadable = ofRule(edited, std::move(found.unreadable), services.locations.home());
    if (const auto kept = found.keptNames.find(id); kept != found.keptNames.end())
        outcome.keptNames = kept->second;
    CandidateVerdicts verdicts(services.locations, guard, control);
    for (const Candidate &one : found.candidates) {
        const RuleVerdict verdict = one.rule == id ? verdicts.of(one) : RuleVerdict::Protected;
        outcome.refused += verdict == RuleVerdict::TargetRefused ? 1 : 0;
        outcome.copied += verdict == RuleVerdict::AlreadyCopied ? 1 : 0;
        if (verdict != RuleVerdict::Takes)
            continue;
        ++outcome.count;
        outcome.bytes += one.isPackage ? 0 : one.seen.size;
        if (outcome.files.size() < most)
            outcome.files.push_back({one.kind, one.source, one.needsAI ? one.aiBase : one.destination, one.needsAI});
    }
    return outcome;
}

RuleTrial::RuleTrial(const RuleServices &services, std::chrono::milliseconds delay)
    : m_services(services)
    , m_pool(abandonablePool())
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    connect(&m_delay, &QTimer::timeout, this, [this] { begin(); });
}

RuleTrial::~RuleTrial() = default;

void RuleTrial::setRule(const CleanupRule &edited, const std::vector<CleanupRule> &rules,
                        const std::vector<FolderProfile> &profiles)
{
    m_edited = edited;
    m_rules = rules;
    m_profiles = profiles;
    restart();
}

void RuleTrial::explain(const std::optional<Location> &file)
{
    if (explained.get() == file)
        return;
    publish(explanation, std::optional<RuleExplanation>());
    publish(explained, file);
    if (m_edited.sourcePath.isEmpty())
        return;
    restart();
}

void RuleTrial::restart()
{
    giveUp();
    publish(running, true);
    m_delay.start();
}

/// Drops work in progress: its result would be for the previous state of the rule.
void RuleTrial::giveUp()
{
    m_looking.reset();
    m_job.reset();
}

void RuleTrial::cancel()
{
    m_delay.stop();
    giveUp();
    publish(running, false);
}

/// Symlinks and missing folders need disk access, so check on a worker.
void RuleTrial::lookForWarnings()
{
    passAbandonedWork(*m_pool);
    m_looking = std::make_unique<Job<std::vector<RuleWarning>>>();
    m_looking->start(
        *m_pool,
        [edited = m_edited, &locations = m_services.locations](JobControl &) { return warningsFor(edited, locations); },
        [this](std::vector<RuleWarning> found) { publish(warnings, std::move(found)); });
}

void RuleTrial::begin()
{
    lookForWarnings();
    passAbandonedWork(*m_pool);
    m_job = std::make_unique<Job<Result<Answer>>>();
    m_job->start(
        *m_pool,
        [services = m_services, edited = m_edited, rules = m_rules, profiles = m_profiles,
         file = explained.get()](JobControl &control) -> Result<Answer> {
            Answer answer;
            answer.outcome = TRY(tryRule(services, rules, edited, profiles, mostShown, &control));
            if (!file)
                return answer;
            CleanupRule rule = edited;
            rule.enabled = true;
            const RuleMatching matching(services.locations, services.clock);
            answer.explanation = TRY(matching.explain(rule, profiles, *file, &control));
            return answer;
        },
        [this](Result<Answer> answer) { take(std::move(answer)); });
}

void RuleTrial::take(Result<Answer> answer)
{
    if (answer) {
        publish(outcome, std::optional(std::move(answer->outcome)));
        publish(explanation, std::move(answer->explanation));
    }
    publish(running, false);
}

} // namespace brellin

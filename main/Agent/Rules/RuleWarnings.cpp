#include "Agent/Rules/RuleWarnings.h"

#include "Agent/Rules/RuleConditions.h"
#include "Agent/Rules/RuleTargets.h"
#include "Base/CommaList.h"
#include "Disk/FileAttributes.h"

#include <algorithm>

namespace brellin {

namespace {

bool wantsNumber(const RuleCondition &condition)
{
    return condition.kind == ConditionKind::OlderThanDays || condition.kind == ConditionKind::LargerThanMB;
}

bool narrows(const RuleCondition &condition)
{
    return wantsNumber(condition) || !commaList(condition.value).isEmpty();
}

class Inspection {
public:
    Inspection(const CleanupRule &rule, const SystemLocations &locations) : m_rule(rule), m_locations(locations) {}

    std::vector<RuleWarning> run()
    {
        inspectSource();
        if (m_rule.action == RuleAction::Rename && m_rule.renamePattern.trimmed().isEmpty())
            m_warnings.push_back(RuleWarning::NoPattern);
        if (m_rule.action != RuleAction::Rename && m_rule.action != RuleAction::Trash)
            inspectTarget();
        inspectConditions();
        return std::move(m_warnings);
    }

private:
    void inspectSource();
    void inspectTarget();
    void inspectConditions();

    const CleanupRule &m_rule;
    const SystemLocations &m_locations;
    std::optional<Location> m_source; ///< resolved
    std::vector<RuleWarning> m_warnings;
};

void Inspection::inspectSource()
{
    const std::optional<Location> folder = rulePath(m_rule.sourcePath, m_locations.home());
    if (!folder) {
        m_warnings.push_back(RuleWarning::NoSource);
        return;
    }
    m_source = resolvedLocation(*folder);
    if (!m_locations.isAllowed(*folder))
        m_warnings.push_back(RuleWarning::SourceRefused);
    else if (const auto there = m_source ? readAttributes(*m_source) : failure(QString()); !there || !there->isFolder())
        m_warnings.push_back(RuleWarning::SourceMissing);
}

void Inspection::inspectTarget()
{
    const std::optional<Location> folder = rulePath(m_rule.targetPath, m_locations.home());
    if (!folder) {
        m_warnings.push_back(RuleWarning::NoTarget);
        return;
    }
    const std::optional<Location> fixed = rulePath(textOf(fixedPart(m_rule.targetPath)), m_locations.home());
    if (!fixed)
        return;
    if (!m_locations.isAllowed(*fixed))
        m_warnings.push_back(RuleWarning::TargetRefused);
    const std::optional<Location> resolved = resolvedLocation(*fixed);
    if (m_rule.includeSubfolders && m_source && resolved && isAtOrBelow(*resolved, *m_source))
        m_warnings.push_back(RuleWarning::TargetInsideSource);
}

void Inspection::inspectConditions()
{
    const auto unreadable = [](const RuleCondition &one) { return wantsNumber(one) && !conditionNumber(one.value); };
    if (std::ranges::any_of(m_rule.conditions, unreadable))
        m_warnings.push_back(RuleWarning::UnreadableNumber);
    if (m_rule.action == RuleAction::Trash && std::ranges::none_of(m_rule.conditions, narrows))
        m_warnings.push_back(RuleWarning::TrashesEverything);
}

} // namespace

QString text(RuleWarning warning)
{
    switch (warning) {
    case RuleWarning::NoSource:
        return QStringLiteral("Kein Ordner gewählt, in dem die Regel sucht.");
    case RuleWarning::SourceRefused:
        return QStringLiteral(
            "In diesen Ordner schaut der Agent nie: System, Programme und Library bleiben unberührt.");
    case RuleWarning::SourceMissing:
        return QStringLiteral("Den Ordner, in dem die Regel sucht, gibt es nicht.");
    case RuleWarning::NoTarget:
        return QStringLiteral("Kein Zielordner angegeben.");
    case RuleWarning::TargetRefused:
        return QStringLiteral("In diesen Zielordner legt der Agent nie etwas: System, Programme und Library bleiben "
                              "unberührt.");
    case RuleWarning::TargetInsideSource:
        return QStringLiteral(
            "Das Ziel liegt im durchsuchten Ordner: Was dort liegt, prüft die Regel jedes Mal wieder.");
    case RuleWarning::NoPattern:
        return QStringLiteral("Kein Muster für den neuen Namen angegeben.");
    case RuleWarning::UnreadableNumber:
        return QStringLiteral("In einer Bedingung fehlt die Zahl: Die Regel passt auf keine Datei.");
    case RuleWarning::TrashesEverything:
        return QStringLiteral("Ohne Bedingung kommen alle Dateien des Ordners in den Papierkorb.");
    }
    return {};
}

std::vector<RuleWarning> warningsFor(const CleanupRule &rule, const SystemLocations &locations)
{
    return Inspection(rule, locations).run();
}

} // namespace brellin

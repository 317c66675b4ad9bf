#include "Agent/Scan.h"

#include "Agent/RuleMatching.h"
#include "Base/German.h"

#include <algorithm>

namespace brellin {

namespace {

AgentProposal proposalOf(const Candidate &candidate)
{
    AgentProposal proposal;
    proposal.kind = candidate.kind;
    proposal.source = candidate.source;
    proposal.destination = candidate.destination;
    proposal.reason = candidate.reason;
    proposal.automatic = candidate.automatic;
    proposal.preselected = true;
    proposal.isFolder = candidate.isPackage;
    proposal.seen = candidate.seen;
    return proposal;
}

bool isProtectedByAny(const std::vector<FolderProfile> &profiles, const Location &location)
{
    return std::ranges::any_of(profiles, [&](const FolderProfile &one) { return one.isProtected(location); });
}

} // namespace

QString ScanFindings::summary(std::int64_t proposed, std::int64_t doneByItself) const
{
    QString text =
        counted(activeRules, QStringLiteral("Regel"), QStringLiteral("Regeln")) + QStringLiteral(" aktiv · ") +
        counted(checkedFiles, QStringLiteral("Datei"), QStringLiteral("Dateien")) + QStringLiteral(" geprüft · ") +
        german().toString(static_cast<qlonglong>(duplicates)) + QStringLiteral(" doppelt · ") +
        counted(proposed, QStringLiteral("Vorschlag"), QStringLiteral("Vorschläge"));
    if (doneByItself > 0)
        text += QStringLiteral(" · ") + german().toString(static_cast<qlonglong>(doneByItself)) +
                QStringLiteral(" automatisch erledigt");
    return text;
}

Result<ScanFindings> scanRules(const AgentServices &services, const std::vector<CleanupRule> &rules,
                               const std::vector<FolderProfile> &profiles, const JobControl &control)
{
    const RuleMatching matching(services.locations, services.clock);
    const RuleEvaluation evaluation = TRY(matching.evaluateCounting(rules, &control));
    ScanFindings findings;
    findings.activeRules = std::ranges::count(rules, true, &CleanupRule::enabled);
    findings.checkedFiles = evaluation.checkedFiles;
    findings.leftForScripts = evaluation.leftForScripts;
    for (const Candidate &candidate : evaluation.candidates) {
        if (!candidate.needsAI && !isProtectedByAny(profiles, candidate.source))
            findings.proposals.push_back(proposalOf(candidate));
    }
    return findings;
}

} // namespace brellin

#include "App/ProposalListing.h"

#include "Base/German.h"

#include <algorithm>
#include <map>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

QString headingOf(Kind kind)
{
    switch (kind) {
    case Kind::Move:
        return QStringLiteral("Verschieben");
    case Kind::Copy:
        return QStringLiteral("Kopieren");
    case Kind::Rename:
        return QStringLiteral("Umbenennen");
    case Kind::Trash:
        return QStringLiteral("In den Papierkorb");
    }
    return {};
}

/// Where a proposal leads: the folder of a move, the new name of a renaming.
QString targetOf(const AgentProposal &proposal, const Location &home)
{
    if (!proposal.destination)
        return {};
    if (proposal.kind == Kind::Rename)
        return QStringLiteral("→ ") + printable(shownName(*proposal.destination));
    return QStringLiteral("→ ") + printable(proposal.destination->parent_path(), home) + u'/';
}

QStringList rowOf(const AgentProposal &proposal, const Location &home, bool ticked)
{
    QStringList row{(ticked ? QStringLiteral("[x] ") : QStringLiteral("[ ] ")) + printable(proposal.source, home)};
    if (proposal.seen)
        row << (proposal.isFolder ? QString() : sizeText(proposal.seen->size)) << longDate(proposal.seen->modified);
    const QString target = targetOf(proposal, home);
    if (!target.isEmpty())
        row << target;
    return row;
}

} // namespace

void printProposals(Terminal &terminal, const Location &home, const std::vector<AgentProposal> &proposals,
                    const CleanupAgent &agent)
{
    // Groups in the order in which their first proposal would be carried out.
    std::vector<std::pair<Kind, QString>> order;
    std::map<std::pair<Kind, QString>, std::vector<QStringList>> groups;
    for (const AgentProposal &proposal : proposals) {
        const std::pair group{proposal.kind, proposal.reason};
        if (!groups.contains(group))
            order.push_back(group);
        groups[group].push_back(rowOf(proposal, home, agent.chosen.get().contains(proposal.id)));
    }
    for (const auto &group : order) {
        const std::vector<QStringList> &rows = groups[group];
        terminal.print(
            QStringLiteral("%1 – %2 (%3)")
                .arg(headingOf(group.first), printable(group.second),
                     counted(static_cast<qint64>(rows.size()), QStringLiteral("Datei"), QStringLiteral("Dateien"))));
        terminal.printColumns(rows);
        terminal.print({});
    }
    terminal.print(agent.findings().summary(static_cast<std::int64_t>(proposals.size()), 0));
    if (agent.findings().leftForScripts > 0)
        terminal.print(QStringLiteral("%1 bleiben (von Skripten benutzt)").arg(agent.findings().leftForScripts));
}

} // namespace brellin

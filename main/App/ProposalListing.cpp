#include "App/ProposalListing.h"

#include "Base/German.h"
#include "Base/LocalDays.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

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

/// Folders as texts. Many files have few targets.
class FolderTexts {
public:
    explicit FolderTexts(const Location &home) : m_home(home) {}

    const QString &ofFolderOf(const Location &entry)
    {
        const std::string_view path = entry.native();
        const std::string_view folder = path.substr(0, path.rfind('/'));
        const auto known = m_texts.find(folder);
        return known != m_texts.end()
                   ? known->second
                   : m_texts.emplace(folder, printable(entry.parent_path(), m_home) + u'/').first->second;
    }

private:
    const Location &m_home;
    std::map<std::string, QString, std::less<>> m_texts;
};

/// The target of a proposal: the folder of a move, or the new name of a rename.
QString targetOf(const AgentProposal &proposal, FolderTexts &folders)
{
    if (!proposal.destination)
        return {};
    if (proposal.kind == Kind::Rename)
        return QStringLiteral("→ ") + printable(shownName(*proposal.destination));
    return QStringLiteral("→ ") + folders.ofFolderOf(*proposal.destination);
}

/// Days as texts. The files of a folder share few of them.
class DayTexts {
public:
    const QString &of(Instant instant)
    {
        const auto [text, isNew] = m_texts.try_emplace(m_days.of(instant));
        if (isNew)
            text->second = longDate(instant);
        return text->second;
    }

private:
    LocalDays m_days;
    std::map<QDate, QString> m_texts;
};

QStringList rowOf(const AgentProposal &proposal, const Location &home, bool ticked, DayTexts &days,
                  FolderTexts &folders)
{
    const QString size = proposal.seen && !proposal.isFolder ? sizeText(proposal.seen->size) : QString();
    QString mark = ticked ? QStringLiteral("[x] ") : QStringLiteral("[ ] ");
    if (proposal.needsReview)
        mark += QStringLiteral("⚠ ");
    return {mark + printable(proposal.source, home), QString(std::max<qsizetype>(0, 9 - size.size()), u' ') + size,
            proposal.seen ? days.of(proposal.seen->modified) : QString(), targetOf(proposal, folders)};
}

} // namespace

void printProposals(Terminal &terminal, const Location &home, const CleanupAgent &agent, const QString &summary)
{
    // Groups in the order of their first proposal.
    std::vector<std::pair<Kind, QString>> order;
    std::map<std::pair<Kind, QString>, std::vector<QStringList>> groups;
    DayTexts days;
    FolderTexts folders(home);
    for (const AgentProposal &proposal : agent.proposals.get()) {
        const auto [group, isNew] = groups.try_emplace({proposal.kind, proposal.reason});
        if (isNew)
            order.push_back(group->first);
        group->second.push_back(rowOf(proposal, home, agent.chosen.get().contains(proposal.id), days, folders));
    }
    std::vector<qsizetype> widths;
    for (const auto &[group, rows] : groups)
        widths = columnWidths(rows, widths);
    // Limit the width: one extremely long name must not push the other columns off the screen.
    if (!widths.empty())
        widths.front() = std::min<qsizetype>(widths.front(), 60);
    for (const auto &group : order) {
        const std::vector<QStringList> &rows = groups[group];
        const QString count =
            counted(static_cast<qint64>(rows.size()), QStringLiteral("Eintrag"), QStringLiteral("Einträge"));
        terminal.print(QStringLiteral("%1 – %2 (%3)").arg(headingOf(group.first), printable(group.second), count));
        terminal.printColumns(rows, 2, widths);
        terminal.print({});
    }
    terminal.print(summary);
}

} // namespace brellin

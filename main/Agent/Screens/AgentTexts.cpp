#include "Agent/Screens/AgentTexts.h"

#include "Base/German.h"
#include "Base/RecentDate.h"

#include <algorithm>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

const QString crumbMark = QStringLiteral(" › ");

QString joined(const QStringList &parts)
{
    return parts.isEmpty() ? QStringLiteral("Benutzerordner") : parts.join(crumbMark);
}

} // namespace

QString dayText(Instant instant, Instant now)
{
    return recentDate(instant, now, OlderDay::LongWithTime);
}

QString lastRunText(const std::optional<Instant> &lastRun, Instant now)
{
    return lastRun ? QStringLiteral("Zuletzt geprüft: ") + dayText(*lastRun, now) : QStringLiteral("Noch nie geprüft");
}

QStringList crumbs(const Location &location, const Location &home)
{
    const bool below = isAtOrBelow(location, home);
    QStringList parts;
    for (const Location &part : below ? location.lexically_relative(home) : location) {
        if (part != "." && !part.empty())
            parts << shown(part);
    }
    return parts;
}

QString crumbText(const Location &location, const Location &home)
{
    return joined(crumbs(location, home));
}

qsizetype ProposalRoad::shared() const
{
    const auto [ended, other] = std::ranges::mismatch(from, to);
    return ended - from.begin();
}

ProposalRoad roadOf(const AgentProposal &proposal, const Location &home)
{
    ProposalRoad road{crumbs(proposal.source.parent_path(), home), {}};
    if (!proposal.destination)
        return road;
    if (proposal.kind == Kind::Rename)
        road.to = {shownName(*proposal.destination)};
    else if (proposal.destination->filename() == proposal.source.filename())
        road.to = crumbs(proposal.destination->parent_path(), home);
    else
        road.to = crumbs(*proposal.destination, home);
    if (road.from.isEmpty())
        road.from = QStringList{QStringLiteral("Benutzerordner")};
    if (road.to.isEmpty())
        road.to = QStringList{QStringLiteral("Benutzerordner")};
    return road;
}

QString spokenText(const AgentProposal &proposal, const QString &failure, const Location &home)
{
    const ProposalRoad road = roadOf(proposal, home);
    QStringList parts{shownName(proposal.source), QStringLiteral("aus ") + joined(road.from)};
    switch (proposal.kind) {
    case Kind::Move:
        parts << QStringLiteral("verschieben nach ") + joined(road.to);
        break;
    case Kind::Copy:
        parts << QStringLiteral("kopieren nach ") + joined(road.to);
        break;
    case Kind::Rename:
        parts << QStringLiteral("umbenennen in ") + joined(road.to);
        break;
    case Kind::Trash:
        parts << QStringLiteral("in den Papierkorb");
        break;
    }
    if (proposal.needsReview)
        parts << QStringLiteral("Prüfung empfohlen");
    parts << (failure.isEmpty() ? proposal.reason : QStringLiteral("fehlgeschlagen: ") + failure);
    return parts.join(QStringLiteral(", "));
}

QString runSummary(const JournalRun &run)
{
    struct Word {
        Kind kind;
        const char16_t *text;
    };
    constexpr auto words = std::to_array<Word>({{Kind::Move, u" verschoben"},
                                                {Kind::Rename, u" umbenannt"},
                                                {Kind::Copy, u" kopiert"},
                                                {Kind::Trash, u" in den Papierkorb gelegt"}});
    QStringList parts;
    for (const Word &word : words) {
        const auto count = std::ranges::count(run.steps, word.kind, &JournalStep::kind);
        if (count > 0)
            parts << german().toString(static_cast<qlonglong>(count)) + QString::fromUtf16(word.text);
    }
    return parts.join(QStringLiteral(" · "));
}

QString stepText(const JournalStep &step, const Location &home)
{
    const QString from = crumbText(step.from.parent_path(), home);
    const QString head = shownName(step.from) + QStringLiteral(": ");
    if (step.kind == Kind::Trash || !step.to)
        return head + from + QStringLiteral(" → Papierkorb");
    if (step.kind == Kind::Rename)
        return head + QStringLiteral("umbenannt in „%1“ (%2)").arg(shownName(*step.to), from);
    const bool sameName = step.to->filename() == step.from.filename();
    const QString to = crumbText(sameName ? step.to->parent_path() : *step.to, home);
    const QString road = head + from + QStringLiteral(" → ") + to;
    return step.kind == Kind::Copy ? road + QStringLiteral(" (kopiert)") : road;
}

} // namespace brellin

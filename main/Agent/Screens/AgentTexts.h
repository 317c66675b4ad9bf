#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Runs/AgentProposal.h"
#include "Runs/JournalRun.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace brellin {

/// "heute, 08:55", "gestern, 17:03", "3. September 2026, 14:05"
QString dayText(Instant instant, Instant now);

/// "Zuletzt geprüft: heute, 08:55" or "Noch nie geprüft"
QString lastRunText(const std::optional<Instant> &lastRun, Instant now);

/// The folders on the way to a place, for reading: {"Dokumente", "Rechnungen"} below the home folder, else from the root.
QStringList crumbs(const Location &location, const Location &home);
/// The same in one line: "Dokumente › Rechnungen"; the home folder itself is "Benutzerordner".
QString crumbText(const Location &location, const Location &home);

/// What the second line of a proposal names.
struct ProposalRoad {
    QStringList from; ///< the folder of the source
    QStringList to;   ///< where it goes, with its new name where that changes; empty for the Trash

    bool operator==(const ProposalRoad &) const = default;
    /// How many leading folders both have in common.
    qsizetype shared() const;
};
ProposalRoad roadOf(const AgentProposal &proposal, const Location &home);

/// What a screen reader says of a proposal.
QString spokenText(const AgentProposal &proposal, const QString &failure, const Location &home);

/// "8 verschoben · 1 umbenannt · 3 im Papierkorb"
QString runSummary(const JournalRun &run);
/// "Rechnung.pdf: Downloads → Dokumente › Rechnungen"
QString stepText(const JournalStep &step, const Location &home);

} // namespace brellin

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

/// The folders of a path for display: {"Dokumente", "Rechnungen"} below the home folder, otherwise from the root.
QStringList crumbs(const Location &location, const Location &home);
/// The same as one line: "Dokumente › Rechnungen"; "Benutzerordner" for the home folder itself.
QString crumbText(const Location &location, const Location &home);

/// The second line of a proposal: from where to where.
struct ProposalRoad {
    QStringList from; ///< the folder of the source
    QStringList to;   ///< the target folder, plus the new name if it changes; empty for the Trash

    bool operator==(const ProposalRoad &) const = default;
    /// The number of common leading folders.
    qsizetype shared() const;
};
ProposalRoad roadOf(const AgentProposal &proposal, const Location &home);

/// The text for screen readers.
QString spokenText(const AgentProposal &proposal, const QString &failure, const Location &home);

/// "8 verschoben · 1 umbenannt · 3 im Papierkorb"
QString runSummary(const JournalRun &run);
/// "Rechnung.pdf: Downloads → Dokumente › Rechnungen"
QString stepText(const JournalStep &step, const Location &home);

} // namespace brellin

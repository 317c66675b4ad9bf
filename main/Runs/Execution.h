#pragma once

#include "Base/JobControl.h"
#include "Runs/AgentProposal.h"
#include "Runs/DroppedRun.h"
#include "Runs/JournalRun.h"
#include "Runs/RunServices.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// A proposal that could not be carried out, and the reason without the file's name.
struct FailedProposal {
    QUuid proposal;
    Location source;
    Failure why;

    /// "Rechnung.pdf: Dafür fehlt die Berechtigung."
    QString text() const;
};

/// What came of a run.
struct ExecutionOutcome {
    std::optional<JournalRun> run; ///< as it stands in the history; nothing when no step was done
    std::vector<QUuid> done;       ///< the proposals that were carried out as they were wanted
    std::vector<FailedProposal> failures;
    bool cancelled = false; ///< the proposals that are in neither list were not begun
    /// The run was done and could not be stored in the history; the next start tries again.
    std::optional<Failure> notStored;
    std::vector<DroppedRun> dropped; ///< fell out of the history for it

    QStringList failureTexts() const;
};

/// Carries out proposals as one run: every step checked, journalled before it acts, and recorded in the history at the end.
class Execution {
public:
    explicit Execution(const RunServices &services) : m_services(services) {}

    /// In the given order. `control` counts steps, names the file at hand and cancels between (and within) steps. Fails
    /// with nothing done when somebody else is working, what the user has laid down cannot be read whole or the journal
    /// cannot be written.
    Result<ExecutionOutcome> execute(const std::vector<AgentProposal> &proposals, JobControl &control);

private:
    const RunServices &m_services;
};

} // namespace brellin

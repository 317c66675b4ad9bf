#pragma once

#include "Base/JobControl.h"
#include "Runs/AgentProposal.h"
#include "Runs/DroppedRun.h"
#include "Runs/JournalRun.h"
#include "Runs/RunHistory.h"
#include "Runs/RunServices.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// A proposal that could not be executed, and the reason without the file's name.
struct FailedProposal {
    QUuid proposal;
    Location source;
    Failure why;

    /// "Rechnung.pdf: Dafür fehlt die Berechtigung."
    QString text() const;
};

/// The result of a run.
struct ExecutionOutcome {
    std::optional<JournalRun> run; ///< as stored in the history; nullopt if no step was done
    std::vector<QUuid> done;       ///< proposals that were executed as wanted
    std::vector<FailedProposal> failures;
    bool cancelled = false; ///< proposals in neither list were not started
    /// The run was executed but could not be stored in the history; recovery at the next start tries again.
    std::optional<Failure> notStored;
    std::vector<DroppedRun> dropped; ///< runs removed from the history to make room

    QStringList failureTexts() const;
};

/// Executes proposals as one run: checks each step, journals it before acting and finally adds the run to the history.
class Execution {
public:
    explicit Execution(const RunServices &services) : m_services(services) {}

    /// Executes in the given order. `control` gets the number of steps and the current file name, and can cancel
    /// between and within steps. Fails without any change if another run or undo is at work, `mayAct` refuses, or the
    /// journal cannot be created.
    Result<ExecutionOutcome> execute(const std::vector<AgentProposal> &proposals, JobControl &control);
    /// The history after `execute`: as stored with the run, which spares reading it, or as read.
    RunHistory::Shown history();

private:
    void addToHistory(ExecutionOutcome &outcome, const RunHistory::Traces &traces);

    const RunServices &m_services;
    std::optional<std::vector<JournalRun>> m_stored; ///< the history with the run
};

} // namespace brellin

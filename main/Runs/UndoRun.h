#pragma once

#include "Base/JobControl.h"
#include "Runs/JournalRun.h"
#include "Runs/Placement.h"
#include "Runs/RunJournal.h"
#include "Runs/RunServices.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// The result of an undo.
struct UndoOutcome {
    std::vector<Location> notRestored; ///< original paths, or those of copies; in the order of undoing
    std::vector<std::size_t> left;     ///< indices of these steps in the run
    QStringList remarks;               ///< „a.pdf: …“, on entries that came back changed
    bool cancelled = false;            ///< repeating the undo continues with the remaining steps

    /// "Rückgängig gemacht." or the number of entries that could not be put back.
    QString status() const;
};

/// Undoes a run, last step first. Journalled like the run itself, so that an interrupted undo continues where it
/// stopped.
class UndoRun {
public:
    explicit UndoRun(const RunServices &services) : m_services(services) {}

    /// Undoes a run of the history and marks it as undone; for a run already undone, retries the steps that failed.
    /// Fails without any change if another run or undo is at work, a volume is not mounted, or nothing is left to undo.
    Result<UndoOutcome> undo(const QUuid &id, JobControl &control);

private:
    const RunServices &m_services;
};

} // namespace brellin

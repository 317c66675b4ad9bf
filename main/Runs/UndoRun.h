#pragma once

#include "Base/JobControl.h"
#include "Runs/JournalRun.h"
#include "Runs/Placement.h"
#include "Runs/RunJournal.h"
#include "Runs/RunServices.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// What came of an undo.
struct UndoOutcome {
    std::vector<Location> notRestored; ///< old paths, in the order in which undoing met them
    std::vector<std::size_t> left;     ///< the numbers of these steps in the run
    QStringList remarks;               ///< „a.pdf: …“, of what came back other than it went
    bool cancelled = false;            ///< undoing it again takes the remaining steps

    /// "Rückgängig gemacht." or how many could not be put back.
    QString status() const;
};

/// Takes a run back, last step first. Journalled like the run itself: one that was cut short goes on where it was.
class UndoRun {
public:
    explicit UndoRun(const RunServices &services) : m_services(services) {}

    /// Undoes a run of the history and marks it undone; of one that is undone, tries what was not restored again. Fails with nothing changed when somebody else is working, or when
    /// the history by now says that there is nothing to undo.
    Result<UndoOutcome> undo(const QUuid &id, JobControl &control);

private:
    const RunServices &m_services;
};

} // namespace brellin

#pragma once

#include "Records/RecordedStep.h"

#include <QByteArray>
#include <QStringList>

/// The stored form of recorded steps: one line of JSON each.
namespace brellin::stepLines {

/// A completed step.
QByteArray done(const RecordedStep &step);
/// Entries of a step were undone: those it had put at these locations.
QByteArray takenBack(const QUuid &step, Instant date, const std::vector<Location> &places);
/// Entries of a step are about to be undone.
QByteArray takingBack(const RecordedStep &step);

struct Content {
    std::vector<RecordedStep> steps; ///< by date, oldest first
    std::vector<RecordedStep> takingBack;
    QStringList lost; ///< why lines could not be read
};

/// Ignores a torn last line. Combines the lines of one step.
Content read(const QByteArray &text);

} // namespace brellin::stepLines

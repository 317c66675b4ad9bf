#pragma once

#include "Records/RecordedStep.h"

#include <QByteArray>
#include <QStringList>

/// The stored form of recorded steps: a line of JSON each.
namespace brellin::stepLines {

/// A step that happened.
QByteArray done(const RecordedStep &step);
/// Entries of a step were taken back, those that it had left at these places.
QByteArray takenBack(const QUuid &step, Instant date, const std::vector<Location> &places);
/// Entries of a step are about to be taken back.
QByteArray takingBack(const RecordedStep &step);

struct Content {
    std::vector<RecordedStep> steps; ///< by date, the oldest first
    std::vector<RecordedStep> takingBack;
    QStringList lost; ///< why lines could not be read
};

/// A torn last line is ignored. Lines of one step add up.
Content read(const QByteArray &text);

} // namespace brellin::stepLines

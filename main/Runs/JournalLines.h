#pragma once

#include "Runs/RunJournal.h"

#include <QByteArray>

/// The lines of a journal file, one JSON object each.
namespace brellin::journalLines {

QByteArray head(const QUuid &run, Instant date);
QByteArray plan(std::size_t step, const PlannedStep &planned);
QByteArray planAgain(std::size_t step, const PlannedStep &planned);
QByteArray folder(const Location &folder);
QByteArray copying(std::size_t step, const Location &temporary);
QByteArray reserving(std::size_t step, const NameReserve &reserve);
QByteArray copied(std::size_t step, const EntryMark &copy);
QByteArray done(std::size_t step, const JournalStep &result, const StepMarks &marks);
QByteArray failed(std::size_t step);

/// Parses the lines. Ignores a torn last line; skips an invalid complete line and sets `damaged`.
JournalContent read(const QByteArray &text);

} // namespace brellin::journalLines

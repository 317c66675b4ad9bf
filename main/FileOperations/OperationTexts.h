#pragma once

#include "FileOperations/FileOperations.h"
#include "FileOperations/Unpacking.h"

/// What file operations ask and say.
namespace brellin::operationTexts {

/// „„Brief.pdf““, „3 Elemente“
QString named(const std::vector<Location> &entries);

/// „Orte des Systems werden nicht verändert.“
QString systemRefusal();

/// „Umbenennen abgebrochen: …“, of a batch.
QString renameStopped(const Failure &why);

OperationQuestion emptyTrashQuestion();
OperationQuestion deleteQuestion(const std::vector<DoomedEntry> &entries, const QStringList &refused);
OperationQuestion unpackQuestion(const Location &archive, const ArchiveSummary &summary, std::int64_t available);

} // namespace brellin::operationTexts

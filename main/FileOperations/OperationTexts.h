#pragma once

#include "FileOperations/FileOperations.h"
#include "FileOperations/Unpacking.h"

/// Questions and messages of file operations.
namespace brellin::operationTexts {

/// „„Brief.pdf““ or „3 Elemente“.
QString named(const std::vector<Location> &entries);

/// „Orte des Systems werden nicht verändert.“
QString systemRefusal();

/// „Umbenennen abgebrochen: …“, for a batch.
QString renameStopped(const Failure &why);

/// Names the amount if it is known.
OperationQuestion emptyTrashQuestion(const std::optional<TrashAmount> &amount);
OperationQuestion deleteQuestion(const std::vector<DoomedEntry> &entries, const EntryFailures &refused);
OperationQuestion unpackQuestion(const Location &archive, const ArchiveSummary &summary, std::int64_t available);

} // namespace brellin::operationTexts

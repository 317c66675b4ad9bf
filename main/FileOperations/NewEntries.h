#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "FileOperations/OperationOutcome.h"

namespace brellin {

/// Creates an empty "Neues Textdokument.txt" in `folder`, or the next free numbered name. Blocking.
Result<Location> createTextDocument(const Location &folder);

/// Copies a template into `folder` under its own name, or the next free numbered one. It appears when it is complete.
/// `notes` gets what should be told besides. Blocking.
Result<Location> createFromTemplate(const Location &model, const Location &folder, FileActions &files,
                                    const Location &logs, const JobControl &control, QStringList &notes);

/// Creates a symlink "Brief.pdf – Verknüpfung" in `folder` for each source; missing sources are failures. Blocking.
OperationOutcome makeAliases(const std::vector<Location> &sources, const Location &folder);

} // namespace brellin

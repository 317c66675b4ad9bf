#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "FileOperations/OperationOutcome.h"

namespace brellin {

/// Creates an empty "Neues Textdokument.txt" in `folder`, or the next free numbered name. Blocking.
Result<Location> createTextDocument(const Location &folder);

/// Creates a symlink "Brief.pdf – Verknüpfung" in `folder` for each source; missing sources are failures. Blocking.
OperationOutcome makeAliases(const std::vector<Location> &sources, const Location &folder);

} // namespace brellin

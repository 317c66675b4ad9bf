#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "FileOperations/OperationOutcome.h"

namespace brellin {

/// Creates an empty "Neues Textdokument.txt" in `folder`, under a free name. Blocking.
Result<Location> createTextDocument(const Location &folder);

/// Makes an alias of each source in `folder`, a link called "Brief.pdf – Verknüpfung". Blocking.
OperationOutcome makeAliases(const std::vector<Location> &sources, const Location &folder);

} // namespace brellin

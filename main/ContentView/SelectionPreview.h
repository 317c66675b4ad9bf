#pragma once

#include "ContentView/ItemOrder.h"
#include "ContentView/Selection.h"
#include "Features/PreviewSummary.h"

namespace brellin {

/// Summarises the selected rows; on top are the first ones displayed.
PreviewSummary previewOfSelection(const DisplayedItems &rows, const Selection &selection,
                                  const KnownFolderSize &folderSize);

} // namespace brellin

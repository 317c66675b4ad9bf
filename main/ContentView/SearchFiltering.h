#pragma once

#include "Base/Instant.h"
#include "ContentView/FileItems.h"
#include "Places/SearchTerms.h"

namespace brellin {

/// Whether an entry meets the filters; `now` decides what is recent. A filter by size leaves out folders.
bool passes(const FileItem &item, const SearchFilters &filters, Instant now);

/// Whether everything that meets `narrow` meets `wide`, as far as can be told without looking at entries.
bool covers(const SearchFilters &wide, const SearchFilters &narrow);

/// The items that meet the filters, in the same order.
FileItems narrowed(const FileItems &items, const SearchFilters &filters, Instant now);

} // namespace brellin

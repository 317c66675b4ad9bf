#pragma once

#include "ContentView/FileItem.h"

#include <cstdint>
#include <vector>

namespace brellin {

/// The rank of each entry's name in natural order (German, numeric, case-insensitive); equal names have equal ranks.
/// Uses several threads for long lists.
std::vector<std::uint32_t> nameRanks(const std::vector<FileItem> &items);

/// As above for any texts.
std::vector<std::uint32_t> textRanks(const std::vector<QString> &texts);

} // namespace brellin

#pragma once

#include "ContentView/FileItem.h"

#include <cstdint>
#include <vector>

namespace brellin {

/// The place of each entry in the order of names: German, numbers by their value, upper and lower case alike. Entries whose
/// names sort alike have the same place. Uses several threads for a long list.
std::vector<std::uint32_t> nameRanks(const std::vector<FileItem> &items);

/// The same for other texts.
std::vector<std::uint32_t> textRanks(const std::vector<QString> &texts);

} // namespace brellin

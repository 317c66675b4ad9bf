#pragma once

#include "Base/Json.h"
#include "Sidebar/QuickEntry.h"

namespace brellin {

template <>
struct JsonTable<QuickEntry> {
    static constexpr std::tuple fields{field("id", &QuickEntry::id),
                                       field("name", &QuickEntry::name),
                                       field("path", &QuickEntry::path),
                                       field("symbol", &QuickEntry::symbol),
                                       field("imagePath", &QuickEntry::imagePath),
                                       field("color", &QuickEntry::color)};
};

} // namespace brellin

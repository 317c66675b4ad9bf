#pragma once

#include "Base/Json.h"
#include "ContentView/TabTarget.h"

namespace brellin {

template <>
struct JsonTable<TabTarget> {
    static constexpr std::tuple fields{field("id", &TabTarget::id), field("path", &TabTarget::path)};
};

} // namespace brellin

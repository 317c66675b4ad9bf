#pragma once

#include "Base/JobControl.h"

#include <algorithm>
#include <optional>

namespace brellin {

/// How far work is, from 0 to 1; nothing while it does not know how much there is.
inline std::optional<double> progressFraction(const JobControl &control)
{
    if (control.total() <= 0)
        return std::nullopt;
    return std::clamp(static_cast<double>(control.done()) / static_cast<double>(control.total()), 0.0, 1.0);
}

} // namespace brellin

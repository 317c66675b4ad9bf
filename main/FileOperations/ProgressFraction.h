#pragma once

#include "Base/JobControl.h"

#include <algorithm>
#include <optional>

namespace brellin {

/// Progress from 0 to 1; none while the total is unknown.
inline std::optional<double> progressFraction(const JobControl &control)
{
    if (control.total() <= 0)
        return std::nullopt;
    return std::clamp(static_cast<double>(control.done()) / static_cast<double>(control.total()), 0.0, 1.0);
}

} // namespace brellin

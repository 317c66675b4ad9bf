#pragma once

#include "Disk/EntryMark.h"

#include <optional>

namespace brellin {

/// What a step has left, to be known again by its undo.
struct StepMarks {
    std::optional<EntryMark> to;
    std::optional<EntryMark> trashedOriginal;

    bool operator==(const StepMarks &) const = default;
};

} // namespace brellin

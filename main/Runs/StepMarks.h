#pragma once

#include "Disk/EntryMark.h"

#include <optional>

namespace brellin {

/// Marks of what a step left, by which its undo recognises the entries.
struct StepMarks {
    std::optional<EntryMark> to;
    std::optional<EntryMark> trashedOriginal;

    bool operator==(const StepMarks &) const = default;
};

} // namespace brellin

#pragma once

#include <QString>

namespace brellin {

/// What distinguishes the two editions built from this source. Decided when linking: only Edition.cpp depends on the
/// build option.
struct Edition {
    /// True for the commercial edition.
    static const bool tidewell;
    /// The program's name as people see it.
    static QString name();
    /// "0.1.0"
    static QString version();
};

} // namespace brellin

#pragma once

#include <QString>

namespace brellin {

/// What distinguishes the two editions built from this source. Decided at link time: only Edition.cpp depends on the
/// build option.
struct Edition {
    /// True for the commercial edition.
    static const bool tidewell;
    /// The program's name for users.
    static QString name();
    /// "0.1.0"
    static QString version();
};

} // namespace brellin

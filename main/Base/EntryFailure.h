#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QList>
#include <QStringList>

namespace brellin {

/// An entry that could not be handled, or not completely, and why. Kept like this until it is shown, so that whoever gets
/// it can find the entry and branch on the cause.
struct EntryFailure {
    Location entry; ///< empty: `why` is a sentence about no single entry
    Failure why;

    bool operator==(const EntryFailure &) const = default;
    /// „Brief.pdf: Keine Berechtigung.“, or the sentence alone.
    QString line() const;
};
using EntryFailures = QList<EntryFailure>;

/// The line of each, in order.
QStringList linesOf(const EntryFailures &failures);

/// The same cause with text in front of what it says.
Failure withLead(const QString &lead, const Failure &why);

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QList>
#include <QStringList>

namespace brellin {

/// An entry that could not be processed, or only partly, with the cause. Converted to text only when shown, so that
/// callers can find the entry and branch on the cause.
struct EntryFailure {
    Location entry; ///< empty if `why` concerns no single entry
    Failure why;

    bool operator==(const EntryFailure &) const = default;
    /// „Brief.pdf: Keine Berechtigung.“; without an entry only the sentence.
    QString line() const;
};
using EntryFailures = QList<EntryFailure>;

/// The lines of all failures, in order.
QStringList linesOf(const EntryFailures &failures);

/// The same cause with `lead` prepended to its message.
Failure withLead(const QString &lead, const Failure &why);

} // namespace brellin

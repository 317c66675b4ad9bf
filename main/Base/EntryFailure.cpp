#include "Base/EntryFailure.h"

namespace brellin {

QString EntryFailure::line() const
{
    return entry.empty() ? why.message : shownName(entry) + QStringLiteral(": ") + why.message;
}

QStringList linesOf(const EntryFailures &failures)
{
    QStringList lines;
    lines.reserve(failures.size());
    for (const EntryFailure &failure : failures)
        lines << failure.line();
    return lines;
}

Failure withLead(const QString &lead, const Failure &why)
{
    return {lead + why.message, why.code};
}

} // namespace brellin

#pragma once

#include <QString>
#include <QStringList>

namespace brellin {

/// Splits a user-entered list at ","; trims the items and drops empty ones.
QStringList commaList(const QString &text);

} // namespace brellin

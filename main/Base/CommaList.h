#pragma once

#include <QString>
#include <QStringList>

namespace brellin {

/// The parts of a user-entered list: split at ",", each trimmed of white space, empty ones dropped.
QStringList commaList(const QString &text);

} // namespace brellin

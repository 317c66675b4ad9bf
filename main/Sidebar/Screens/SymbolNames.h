#pragma once

#include <QString>

namespace brellin {

/// How a symbol that may be chosen for an entry is called to a person.
QString germanSymbolName(const QString &symbol);

} // namespace brellin

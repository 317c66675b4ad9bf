#pragma once

#include <QString>

namespace brellin {

/// The German name of a symbol.
QString germanSymbolName(const QString &symbol);

} // namespace brellin

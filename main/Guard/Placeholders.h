#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <QString>

#include <string_view>

namespace brellin {

/// Replaces all occurrences of {Jahr} {Monat} {Tag} {Datum} {Kategorie} {Name} {Endung}, in this order and
/// case-sensitively. Dates are in the user's time zone; {Name} is the cleaned name without extension.
QString expand(const QString &pattern, const Location &file, Instant date);

/// Strips copy marks, a trailing counter and underscores: "Rechnung_2024 (3)" becomes "Rechnung 2024".
QString cleanFileName(const QString &name);

/// Whether a lower-case extension is that of a script, which the agent never moves.
bool isScriptExtension(std::string_view extension);

} // namespace brellin

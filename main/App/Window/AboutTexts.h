#pragma once

#include <QStringList>

namespace brellin {

/// „Über Brellin“: version, what the program is made of and where what it shows comes from, line by line.
QStringList aboutLines();

} // namespace brellin

#pragma once

#include <QString>

/// Texts of the hand-over that mention the system's keyboard shortcuts.
namespace brellin::handOverTexts {

QString opened();

} // namespace brellin::handOverTexts

#pragma once

#include <QString>

/// Texts of the hand-over that name this system's keys.
namespace brellin::handOverTexts {

QString opened();

} // namespace brellin::handOverTexts

#pragma once

#include <QString>

namespace brellin {

/// The index after the first `count` graphemes, what a reader takes for one character.
qsizetype endOfGraphemes(const QString &text, int count);

/// The first `count` graphemes.
QString firstGraphemes(const QString &text, int count);

} // namespace brellin

#pragma once

#include <QString>

namespace brellin {

/// Text from a mail on one line: without control and direction characters, white space as single blanks, trimmed.
QString plainText(const QString &text);

/// The same as part of a file name: "/" and ":" become "-", and no dot leads.
QString plainName(const QString &text);

} // namespace brellin

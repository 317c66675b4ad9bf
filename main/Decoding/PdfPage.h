#pragma once

#include "Base/Result.h"

#include <QIODevice>
#include <QString>

namespace brellin {

/// The text of a PDF's first page, at most 8,000 characters. The device must be open for reading and random-access.
Result<QString> firstPageText(QIODevice &pdf);

} // namespace brellin

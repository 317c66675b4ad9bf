#pragma once

#include "Base/Result.h"

#include <QIODevice>
#include <QString>

namespace brellin {

/// The text of a PDF's first page, at most 8,000 characters of it. The device is open for reading and is not sequential.
Result<QString> firstPageText(QIODevice &pdf);

} // namespace brellin

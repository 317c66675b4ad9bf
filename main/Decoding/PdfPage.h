#pragma once

#include "Base/Result.h"

#include <QIODevice>
#include <QJsonObject>
#include <QString>

namespace brellin {

/// The text of a PDF's first page, at most 8,000 characters. The device must be open for reading and random-access.
Result<QString> firstPageText(QIODevice &pdf);

/// The texts of the pages from `first` on: {"pages": number of all, "texts": […]}. At least one, and as many as are read
/// in two seconds, at most 100 with together about 200,000 characters.
Result<QJsonObject> pageTexts(QIODevice &pdf, int first);

} // namespace brellin

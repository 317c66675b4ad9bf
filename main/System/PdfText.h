#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QString>

#include <functional>

namespace brellin {

/// Reads the text of a PDF's first page in a separate process, which a cancel ends.
using PdfText = std::function<Result<QString>(const Location &pdf, const JobControl *control)>;

} // namespace brellin

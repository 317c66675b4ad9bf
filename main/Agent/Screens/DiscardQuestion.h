#pragma once

#include "Look/YesNoSheet.h"

namespace brellin {

/// Asks over an editor whether what was edited may be lost; accepted, it may. Not yet open.
YesNoSheet *makeDiscardQuestion(const QString &explanation, QWidget *editor);

} // namespace brellin

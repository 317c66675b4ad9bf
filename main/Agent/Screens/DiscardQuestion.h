#pragma once

#include "Look/YesNoSheet.h"

namespace brellin {

/// Creates, without opening it, the sheet that asks before an editor discards changes; accepted() means discard.
YesNoSheet *makeDiscardQuestion(const QString &explanation, QWidget *editor);

} // namespace brellin

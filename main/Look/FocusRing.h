#pragma once

class QWidget;

namespace brellin {

/// Moves the focus to the next or previous control inside `whole`, and around at its end. Returns false if there is none.
bool focusWithin(QWidget &whole, bool next);

} // namespace brellin

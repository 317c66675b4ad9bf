#pragma once

class QWidget;

namespace brellin {

/// Whether the widget accepts typed text: a field or text that is not read-only, a spin box, an editable combo box.
bool isEditable(const QWidget *widget);

} // namespace brellin

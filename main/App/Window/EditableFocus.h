#pragma once

class QWidget;

namespace brellin {

/// Whether a widget takes typed text: a field or a text that is not read only, a spin box, a choice that can be typed.
bool isEditable(const QWidget *widget);

} // namespace brellin

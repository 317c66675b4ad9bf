#pragma once

#include <QRect>

namespace brellin {

/// Moves and shrinks `wanted` so that the window with its title bar fits on the screen area `room`.
QRect fittingFrame(const QRect &wanted, const QRect &room);

} // namespace brellin

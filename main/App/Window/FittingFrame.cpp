#include "App/Window/FittingFrame.h"

#include <algorithm>

namespace brellin {

QRect fittingFrame(const QRect &wanted, const QRect &room)
{
    // Estimates, since the size of the window manager's frame is unknown before the window is shown.
    constexpr int titleBar = 40;
    constexpr int edge = 2;
    const QRect inner = room.adjusted(edge, titleBar, -edge, -edge);
    const QSize size = wanted.size().boundedTo(inner.size());
    return {QPoint(std::clamp(wanted.x(), inner.left(), inner.right() + 1 - size.width()),
                   std::clamp(wanted.y(), inner.top(), inner.bottom() + 1 - size.height())),
            size};
}

} // namespace brellin

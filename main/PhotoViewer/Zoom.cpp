#include "PhotoViewer/Zoom.h"

#include <algorithm>

namespace brellin {

namespace {

QPointF middleOf(const QSizeF &size)
{
    return {size.width() / 2, size.height() / 2};
}

/// The start of the picture along one axis.
double startOf(double wanted, double picture, double view)
{
    if (picture <= view)
        return (view - picture) / 2;
    return std::clamp(wanted, view - picture, 0.0);
}

/// The zoom that places the picture at `place` or as near as possible.
Zoom zoomAt(double scale, QPointF topLeft, const ZoomGround &ground)
{
    const QSizeF size = ground.picture * scale;
    const QPointF from(startOf(topLeft.x(), size.width(), ground.view.width()),
                       startOf(topLeft.y(), size.height(), ground.view.height()));
    const QPointF middle = middleOf(ground.view) - from;
    return {scale, {middle.x() / size.width(), middle.y() / size.height()}};
}

} // namespace

double fittedScale(const ZoomGround &ground)
{
    if (ground.picture.isEmpty() || ground.view.isEmpty())
        return 1;
    return std::min(
        {1.0, ground.view.width() / ground.picture.width(), ground.view.height() / ground.picture.height()});
}

double scaleOf(const Zoom &zoom, const ZoomGround &ground)
{
    return zoom.scale.value_or(fittedScale(ground));
}

QRectF placeOf(const Zoom &zoom, const ZoomGround &ground)
{
    const QSizeF size = ground.picture * scaleOf(zoom, ground);
    const QPointF middle = middleOf(ground.view);
    return {startOf(middle.x() - zoom.middle.x() * size.width(), size.width(), ground.view.width()),
            startOf(middle.y() - zoom.middle.y() * size.height(), size.height(), ground.view.height()), size.width(),
            size.height()};
}

Zoom zoomedTo(const Zoom &zoom, double scale, QPointF at, const ZoomGround &ground)
{
    if (ground.picture.isEmpty() || ground.view.isEmpty() || scale <= fittedScale(ground))
        return {};
    scale = std::min(scale, largestScale);
    const QRectF before = placeOf(zoom, ground);
    const double growth = scale / scaleOf(zoom, ground);
    return zoomAt(scale, at - (at - before.topLeft()) * growth, ground);
}

Zoom movedBy(const Zoom &zoom, QPointF way, const ZoomGround &ground)
{
    if (!zoom.scale || ground.picture.isEmpty())
        return zoom;
    return zoomAt(*zoom.scale, placeOf(zoom, ground).topLeft() + way, ground);
}

Zoom toggled(const Zoom &zoom, QPointF at, const ZoomGround &ground)
{
    return zoom.scale ? Zoom() : zoomedTo(zoom, 1, at, ground);
}

} // namespace brellin

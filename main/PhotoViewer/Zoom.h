#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace brellin {

/// The largest scale: one pixel of the picture as a square of this side.
constexpr double largestScale = 16;

/// The sizes that a zoom depends on.
struct ZoomGround {
    QSizeF picture; ///< at 100 %
    QSizeF view;

    bool operator==(const ZoomGround &) const = default;
};

/// How a picture lies in its view: fitted into it, or enlarged around a point. Independent of both sizes, so that it
/// stays valid when the view is resized.
struct Zoom {
    std::optional<double> scale; ///< 1 is 100 %; nullopt: fitted
    QPointF middle = {0.5, 0.5}; ///< the point of the picture in the middle of the view, as shares of its size

    bool operator==(const Zoom &) const = default;
};

/// The scale that shows the whole picture; never enlarges.
double fittedScale(const ZoomGround &ground);
double scaleOf(const Zoom &zoom, const ZoomGround &ground);
/// Where the picture lies in the view: centred where it is smaller, without a gap at its edges where it is larger.
QRectF placeOf(const Zoom &zoom, const ZoomGround &ground);

/// Changes the scale; the point of the picture at `at` stays there. From the fitted scale down the picture is fitted.
Zoom zoomedTo(const Zoom &zoom, double scale, QPointF at, const ZoomGround &ground);
/// Moves the picture as far as its edges allow.
Zoom movedBy(const Zoom &zoom, QPointF way, const ZoomGround &ground);
/// Between fitted and 100 %, as a double click does.
Zoom toggled(const Zoom &zoom, QPointF at, const ZoomGround &ground);

} // namespace brellin

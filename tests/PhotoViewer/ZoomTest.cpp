#include "PhotoViewer/Zoom.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

const ZoomGround wide{{4000, 1000}, {1000, 500}};

} // namespace

TEST(ZoomTest, fitsTheWholePictureAndNeverEnlargesIt)
{
    EXPECT_EQ(placeOf({}, wide), QRectF(0, 125, 1000, 250));
    EXPECT_EQ(placeOf({}, {{300, 1000}, {1000, 500}}), QRectF(425, 0, 150, 500));
    EXPECT_EQ(placeOf({}, {{16, 16}, {1000, 500}}), QRectF(492, 242, 16, 16));
    EXPECT_EQ(zoomedTo({}, 0.1, {0, 0}, wide), Zoom()) << "smaller than fitted";
}

TEST(ZoomTest, keepsThePointUnderThePointer)
{
    const QPointF at(250, 250); // a quarter from the left of the fitted picture
    Zoom zoom = zoomedTo({}, 1, at, wide);
    EXPECT_EQ(placeOf(zoom, wide), QRectF(-750, -250, 4000, 1000));
    zoom = zoomedTo(zoom, 2, at, wide);
    EXPECT_EQ(placeOf(zoom, wide), QRectF(-1750, -750, 8000, 2000));
    EXPECT_EQ(scaleOf(zoomedTo(zoom, 1000, at, wide), wide), largestScale);
    EXPECT_EQ(toggled(zoom, at, wide), Zoom());
    EXPECT_EQ(scaleOf(toggled({}, at, wide), wide), 1);
}

TEST(ZoomTest, movesUpToTheEdges)
{
    Zoom zoom = zoomedTo({}, 1, {0, 250}, wide);
    EXPECT_EQ(placeOf(zoom, wide).left(), 0);
    zoom = movedBy(zoom, {-300, 40}, wide);
    EXPECT_EQ(placeOf(zoom, wide).topLeft(), QPointF(-300, -210));
    zoom = movedBy(zoom, {-9000, 9000}, wide);
    EXPECT_EQ(placeOf(zoom, wide).topLeft(), QPointF(-3000, 0));
    EXPECT_EQ(placeOf(movedBy(zoom, {1, 0}, wide), wide).left(), -2999) << "moves back at once";

    const Zoom flat = zoomedTo({}, 0.4, {500, 250}, wide); // 1600 × 400: lower than the view
    EXPECT_EQ(placeOf(movedBy(flat, {0, 70}, wide), wide).top(), 50);
    EXPECT_EQ(movedBy({}, {10, 10}, wide), Zoom()) << "fitted, all of it is visible";
}

TEST(ZoomTest, theMiddleStaysWhenTheViewIsResized)
{
    const Zoom zoom = movedBy(zoomedTo({}, 1, {500, 250}, wide), {-200, 0}, wide);
    const QRectF place = placeOf(zoom, {wide.picture, {600, 500}});
    EXPECT_EQ(300 - place.left(), 2200);
}

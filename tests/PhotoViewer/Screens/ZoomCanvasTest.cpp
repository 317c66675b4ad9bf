#include "PhotoViewer/Screens/ZoomCanvas.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace brellin;

namespace {

class ZoomCanvasTest : public testing::Test {
protected:
    ZoomCanvasTest()
    {
        canvas.resize(400, 300);
        canvas.show();
        show(ZoomCanvas::Sharpness::Other);
    }
    /// A picture of 1600 × 600, decoded at half its size: red left, blue right.
    void show(ZoomCanvas::Sharpness sharpness)
    {
        QImage halves(800, 300, QImage::Format_RGB32);
        halves.fill(Qt::red);
        for (int y = 0; y < halves.height(); ++y)
            for (int x = 400; x < 800; ++x)
                halves.setPixel(x, y, qRgb(0, 0, 255));
        canvas.setPicture(QPixmap::fromImage(halves), {1600, 600}, sharpness);
    }
    void turnWheel(QPointF at, int steps)
    {
        QWheelEvent event(at, canvas.mapToGlobal(at), {}, {0, 120 * steps}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&canvas, &event);
    }
    QColor colorAt(QPoint point) { return canvas.grab().toImage().pixelColor(point); }

    ZoomCanvas canvas{nullptr};
};

} // namespace

TEST_F(ZoomCanvasTest, doubleClickAndWheelZoomWhereTheyPoint)
{
    EXPECT_EQ(canvas.place(), QRectF(0, 75, 400, 150));
    EXPECT_EQ(colorAt({100, 150}), QColor(Qt::red));
    EXPECT_EQ(colorAt({300, 150}), QColor(Qt::blue));

    QTest::mouseDClick(&canvas, Qt::LeftButton, {}, {300, 150});
    EXPECT_EQ(canvas.scale(), 1);
    EXPECT_EQ(canvas.place(), QRectF(-900, -150, 1600, 600));
    EXPECT_EQ(colorAt({100, 150}), QColor(Qt::blue));
    QTest::mouseDClick(&canvas, Qt::LeftButton, {}, {10, 10});
    EXPECT_TRUE(canvas.isFitted());

    turnWheel({400, 150}, 1);
    EXPECT_NEAR(canvas.scale(), 0.25 * 1.2, 0.001);
    EXPECT_NEAR(canvas.place().right(), 400, 0.01);
    turnWheel({400, 150}, -2);
    EXPECT_TRUE(canvas.isFitted());
}

TEST_F(ZoomCanvasTest, isMovedWithTheMouseWhereItIsLarger)
{
    EXPECT_EQ(canvas.cursor().shape(), Qt::ArrowCursor);
    canvas.showWhole();
    EXPECT_EQ(canvas.cursor().shape(), Qt::OpenHandCursor);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, {200, 150});
    QTest::mouseMove(&canvas, {250, 120});
    QTest::mouseMove(&canvas, {260, 110});
    EXPECT_EQ(canvas.cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {260, 110});
    EXPECT_EQ(canvas.place().topLeft(), QPointF(-540, -190));
    EXPECT_EQ(canvas.cursor().shape(), Qt::OpenHandCursor);
}

TEST_F(ZoomCanvasTest, keepsItsZoomForASharperPictureOnly)
{
    canvas.zoomBy(8);
    EXPECT_EQ(canvas.shownSide(), 3200);
    const QRectF before = canvas.place();
    show(ZoomCanvas::Sharpness::Same);
    EXPECT_EQ(canvas.place(), before);
    QSignalSpy scaled(&canvas, &ZoomCanvas::scaled);
    show(ZoomCanvas::Sharpness::Other);
    EXPECT_TRUE(canvas.isFitted());
    EXPECT_EQ(scaled.size(), 1);
}

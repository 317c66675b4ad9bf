#include "PhotoViewer/Screens/LargeView.h"

#include "Features/PreviewLoader.h"
#include "PhotoViewer/Screens/ZoomCanvas.h"
#include "Support/FakeClock.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A picture of one colour.
DecodedPicture plain(int width, int height)
{
    return {width, height, true, QByteArray(qsizetype(width) * height * 4, '\x80')};
}

class LargeViewTest : public testing::Test {
protected:
    LargeViewTest()
    {
        window.resize(900, 600);
        window.show();
    }
    /// Shows one of several entries and waits until it is loaded.
    void show(const Location &entry)
    {
        view.show({entry, tree.path("before"), tree.path("after"), 2, 3});
        EXPECT_TRUE(loads(entry)) << entry;
    }
    bool loads(const Location &entry)
    {
        return waitUntil([&] {
            const PreviewContent &content = loader.content.get();
            return content.entry == entry && content.state != PreviewContent::State::Loading;
        });
    }
    void press(int key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), held);
    }
    QString text(const char *name) { return view.findChild<QLabel *>(QString::fromLatin1(name))->text(); }
    bool isVisible(const char *name) { return view.findChild<QWidget *>(QString::fromLatin1(name))->isVisible(); }
    bool pageBecomes(const QString &page)
    {
        return waitUntil([&] { return text("largePage") == page; });
    }
    int asksFor(const char *word)
    {
        return static_cast<int>(std::ranges::count(decoder.asked(), word, &DecoderRequest::word));
    }

    const TempTree tree;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    FakeDecoder decoder;
    FakeClock clock;
    PreviewLoader loader{defaults, volumes, decoder, clock};
    QWidget window;
    LargeView view{loader, &window};
    ZoomCanvas &canvas{*view.findChild<ZoomCanvas *>()};
};

} // namespace

TEST_F(LargeViewTest, turnsPagesAndKeepsTheirZoom)
{
    decoder.answers.emplace(decoderWords::facts, QByteArray(R"({"pages":3,"pageWidth":600,"pageHeight":1200})"));
    decoder.answer = bytesOf(plain(512, 1024));
    show(tree.file("a.pdf", "x"));
    EXPECT_EQ(text("largePage"), u"Seite 1 von 3"_qs);
    EXPECT_LT(canvas.scale(), 0.5);
    press(Qt::Key_1);
    canvas.moveBy({0, -300});
    press(Qt::Key_PageDown);
    EXPECT_TRUE(pageBecomes(u"Seite 2 von 3"_qs));
    EXPECT_EQ(canvas.scale(), 1);
    EXPECT_EQ(canvas.place().top(), 0) << "from its top";
    press(Qt::Key_End);
    EXPECT_TRUE(pageBecomes(u"Seite 3 von 3"_qs));
    EXPECT_FALSE(view.findChild<QAbstractButton *>(u"largePageOn"_qs)->isEnabled());
    press(Qt::Key_PageDown);
    QTest::mouseClick(view.findChild<QAbstractButton *>(u"largePageBack"_qs), Qt::LeftButton);
    EXPECT_TRUE(pageBecomes(u"Seite 2 von 3"_qs));
    EXPECT_TRUE(view.hasFocus()) << "a click leaves the keys to the view";

    decoder.answers.clear();
    show(tree.file("b.png", "x"));
    EXPECT_FALSE(isVisible("largePage"));
    EXPECT_TRUE(canvas.isFitted());
}

TEST_F(LargeViewTest, decodesLargerOnlyWhatHasMoreToShow)
{
    decoder.answers.emplace(decoderWords::facts, QByteArray(R"({"width":4000,"height":2000})"));
    decoder.answer = bytesOf(plain(1024, 512));
    show(tree.file("a.png", "x"));
    const int before = asksFor(decoderWords::picture);
    press(Qt::Key_1);
    EXPECT_TRUE(waitUntil([&] { return asksFor(decoderWords::picture) == before + 1; }));
    EXPECT_EQ(decoder.asked().back().arguments.back(), std::to_string(mostPictureSide));
    EXPECT_EQ(canvas.scale(), 1) << "the picture stays until the sharper one is there";

    decoder.answers.clear();
    show(tree.file("small.png", "x")); // two pixels
    const int small = asksFor(decoderWords::picture);
    EXPECT_EQ(decoder.asked().back().arguments.back(), "1024") << "the next one is not decoded as large";
    for (int i = 0; i < 20; ++i)
        press(Qt::Key_Plus);
    QTest::qWait(150); // longer than the loader's pause
    show(tree.file("end.txt", "x"));
    EXPECT_EQ(asksFor(decoderWords::picture), small);
}

TEST_F(LargeViewTest, showsOnlyTheEntryShownLast)
{
    decoder.hold(true);
    const Location slow = tree.file("slow.png", "x");
    view.show({slow, {}, {}, 1, 2});
    EXPECT_TRUE(
        waitUntil([&] { return text("entryCardRemark") == u"Wird geladen …"_qs && isVisible("entryCardName"); }));
    show(tree.file("quick.txt", "text"));
    view.show({slow, {}, {}, 1, 2});
    show(tree.path("quick.txt"));
    EXPECT_TRUE(isVisible("largeText"));
    decoder.hold(false);
    QTest::qWait(400); // longer than loading may last unsaid
    EXPECT_TRUE(isVisible("largeText"));
    EXPECT_EQ(text("largeName"), u"quick.txt"_qs);
}

TEST_F(LargeViewTest, keysAndButtonsAskForTheNeighbours)
{
    decoder.answers.emplace(decoderWords::archive,
                            QByteArray(R"({"entries":[{"name":"a"},{"name":"b"}],"more":true})"));
    show(tree.file("x.zip", "x"));
    EXPECT_TRUE(isVisible("largeArchive"));
    EXPECT_FALSE(text("largeRemark").isEmpty());
    QSignalSpy wanted(&view, &LargeView::entryWanted);
    QSignalSpy opened(&view, &LargeView::openRequested);
    press(Qt::Key_Down);
    EXPECT_EQ(wanted.size(), 0) << "scrolls in the list";
    EXPECT_EQ(view.findChild<QTreeWidget *>(u"largeArchive"_qs)->currentIndex().row(), 0);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    QTest::mouseClick(view.findChild<QAbstractButton *>(u"largeAfter"_qs), Qt::LeftButton);
    ASSERT_EQ(wanted.size(), 3);
    EXPECT_EQ(wanted[0][0].value<Location>(), tree.path("after"));
    EXPECT_EQ(wanted[1][0].value<Location>(), tree.path("before"));
    press(Qt::Key_Return);
    EXPECT_EQ(opened.size(), 1);
    QPushButton outside(&window);
    outside.show();
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(view.isAncestorOf(QApplication::focusWidget()));
    }
    view.setViewing({tree.path("x.zip"), {}, {}, 0, 2});
    EXPECT_FALSE(view.findChild<QAbstractButton *>(u"largeAfter"_qs)->isEnabled());
    EXPECT_EQ(text("largeNumber"), QString());
}

#include "App/Window/WindowWorld.h"

#include "PhotoViewer/Screens/ZoomCanvas.h"

#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class LargeViewingTest : public WindowWorld {
protected:
    LargeViewingTest()
    {
        std::filesystem::create_directories(folder / "Alben");
        picture("bild.png");
        file("notiz.txt", "Guten Tag");
        file("rest.xyz", std::string(40, '\0'));
    }

    void picture(const std::string &name, QSize size = {640, 480}) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        ASSERT_TRUE(image.save(shown(folder / name), "PNG"));
    }
    QWidget *view() const { return window->findChild<QWidget *>(QStringLiteral("largeView")); }
    bool isOpen() const { return view() && view()->isVisible(); }
    ZoomCanvas &canvas() const { return *view()->findChild<ZoomCanvas *>(); }
    QString label(const char *name) const { return view()->findChild<QLabel *>(QString::fromLatin1(name))->text(); }
    bool shows(const char *widget) const
    {
        return isOpen() && view()->findChild<QWidget *>(QString::fromLatin1(widget))->isVisible();
    }
    bool showsPicture() const
    {
        return waitUntil([this] {
            return shows("zoomCanvas") && label("largeScale") == QStringLiteral("100 %") && shows("largeScale");
        });
    }
    bool remarkBecomes(const QString &text) const
    {
        return waitUntil([&] { return shows("entryCardRemark") && label("entryCardRemark").contains(text); });
    }
    QString current() const { return details()->currentIndex().siblingAtColumn(0).data().toString(); }
    bool selects(const std::vector<std::string> &names) const
    {
        std::vector<Location> wanted;
        for (const std::string &name : names)
            wanted.push_back(folder / name);
        return pane().selection.get() == Selection(wanted);
    }
};

} // namespace

TEST_F(LargeViewingTest, spaceShowsTheEntryAndArrowsGoOnWithTheList)
{
    open();
    click(QStringLiteral("bild.png"));
    key(Qt::Key_Space);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(view()->hasFocus());
    EXPECT_EQ(view()->size(), window->size());
    EXPECT_EQ(label("largeNumber"), QStringLiteral("2 von 4"));
    EXPECT_TRUE(showsPicture());

    key(Qt::Key_Right);
    EXPECT_TRUE(waitUntil([this] { return shows("largeText"); }));
    EXPECT_EQ(find<QPlainTextEdit>(QStringLiteral("largeText"))->toPlainText(), QStringLiteral("Guten Tag"));
    EXPECT_EQ(current(), QStringLiteral("notiz.txt"));
    EXPECT_TRUE(selects({"notiz.txt"}));
    key(Qt::Key_Right);
    EXPECT_TRUE(remarkBecomes(QStringLiteral("kein Text")));
    EXPECT_EQ(label("largeNumber"), QStringLiteral("4 von 4"));
    key(Qt::Key_Right);
    EXPECT_EQ(label("largeName"), QStringLiteral("rest.xyz")) << "there is no further one";
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Up);
    EXPECT_TRUE(waitUntil([this] { return label("entryCardSummary").startsWith(QStringLiteral("Ordner · ")); }));
    EXPECT_EQ(label("entryCardName"), QStringLiteral("Alben"));

    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(details()->hasFocus());
    EXPECT_EQ(current(), QStringLiteral("Alben"));
    key(Qt::Key_Space);
    EXPECT_TRUE(isOpen());
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(details()->hasFocus());
}

TEST_F(LargeViewingTest, spaceTypesAndPressesWhereItIsMeantTo)
{
    file("neu er Brief.txt");
    file("neu.txt");
    open();
    click(QStringLiteral("bild.png"));
    type(QStringLiteral("neu"));
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(current(), QStringLiteral("neu er Brief.txt"));
    pane().setViewMode(ViewMode::Icons);
    key(Qt::Key_B);
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen());
    pane().setViewMode(ViewMode::Details);

    pane().startRename(pane().displayedItems.get()[1]);
    key(Qt::Key_End);
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen());
    key(Qt::Key_Escape);
    details()->setFocus();
    key(Qt::Key_Escape); // ends the typing
    find<QWidget>(QStringLiteral("commandsButton"))->setFocus();
    key(Qt::Key_Space);
    EXPECT_FALSE(isOpen());
}

TEST_F(LargeViewingTest, keysZoomAndTheWindowsCommandsWait)
{
    picture("gross.png", {3000, 2000});
    open();
    click(QStringLiteral("gross.png"));
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([this] { return shows("largeScale"); }));
    EXPECT_LT(canvas().scale(), 0.4);
    key(Qt::Key_1);
    EXPECT_EQ(label("largeScale"), QStringLiteral("100 %"));
    const QRectF before = canvas().place();
    key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_GT(canvas().place().left(), before.left());
    key(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(label("largeScale"), QStringLiteral("125 %"));
    key(Qt::Key_0);
    EXPECT_TRUE(canvas().isFitted());

    key(Qt::Key_F3);
    key(Qt::Key_W, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(window->state().dualPane);
    EXPECT_EQ(pane().current.get(), folder);
}

TEST_F(LargeViewingTest, saysWhatIsBrokenOrGoneAndGoesOn)
{
    file("kaputt.png", "kein Bild");
    open();
    click(QStringLiteral("kaputt.png"));
    key(Qt::Key_Space);
    EXPECT_TRUE(remarkBecomes(QStringLiteral("beschädigt")));
    picture("kaputt.png");
    EXPECT_TRUE(showsPicture()) << "the file was replaced";
    std::filesystem::remove(folder / "kaputt.png");
    EXPECT_TRUE(remarkBecomes(QStringLiteral("ist nicht mehr da")));
    EXPECT_EQ(label("largeNumber"), QString());
    key(Qt::Key_Left);
    EXPECT_TRUE(showsPicture());
    EXPECT_EQ(current(), QStringLiteral("bild.png"));
}

TEST_F(LargeViewingTest, deleteTrashesTheEntryShownAndShowsItsNeighbour)
{
    open();
    click(QStringLiteral("bild.png"));
    key(Qt::Key_Space);
    key(Qt::Key_Delete);
    EXPECT_TRUE(waitUntil([this] { return label("largeName") == QStringLiteral("notiz.txt"); }));
    EXPECT_FALSE(has("bild.png"));
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(view()->hasFocus());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return label("largeName") == QStringLiteral("bild.png"); }));
    EXPECT_TRUE(showsPicture());
}

TEST_F(LargeViewingTest, severalSelectedAreShownAsOneThenOneAfterTheOther)
{
    open();
    click(QStringLiteral("bild.png"));
    click(QStringLiteral("rest.xyz"), Qt::LeftButton, Qt::ControlModifier);
    key(Qt::Key_Space);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(shows("previewStack"));
    EXPECT_EQ(label("entryCardName"), QStringLiteral("2 Elemente"));
    EXPECT_EQ(label("largeName"), QStringLiteral("2 Elemente"));
    key(Qt::Key_Right);
    EXPECT_TRUE(showsPicture());
    EXPECT_FALSE(shows("previewStack"));
    EXPECT_EQ(label("largeNumber"), QStringLiteral("1 von 2"));
    EXPECT_EQ(current(), QStringLiteral("bild.png"));
    EXPECT_TRUE(selects({"bild.png", "rest.xyz"}));
    key(Qt::Key_Delete);
    EXPECT_TRUE(isOpen() && has("bild.png") && has("rest.xyz")) << "two are selected, one is shown";
    key(Qt::Key_Right);
    EXPECT_EQ(current(), QStringLiteral("rest.xyz"));
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_TRUE(shows("previewStack"));
    key(Qt::Key_Delete);
    EXPECT_TRUE(waitUntil([this] { return !has("bild.png") && !has("rest.xyz"); })) << "what is selected is shown";
    EXPECT_TRUE(waitUntil([this] { return label("largeName") == QStringLiteral("Alben"); }));
}

#include "PhotoViewer/Screens/LargeView.h"

#include "Features/PreviewLoader.h"
#include "Support/FakeClock.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

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
    QString text(const char *name) { return view.findChild<QLabel *>(QString::fromLatin1(name))->text(); }
    bool isVisible(const char *name) { return view.findChild<QWidget *>(QString::fromLatin1(name))->isVisible(); }
    const TempTree tree;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    FakeDecoder decoder;
    FakeClock clock;
    PreviewLoader loader{defaults, volumes, decoder, clock};
    QWidget window;
    LargeView view{loader, &window};
};

} // namespace

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

#include "App/Window/StatusBar.h"
#include "ContentView/BrowserWorld.h"
#include "Look/DetailsSheet.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(StatusBarTest, namesTheFoldersThatASearchCouldNotRead)
{
    Theme::install(*qApp);
    BrowserWorld world;
    world.tree.lines({"home/zu/brief", "home/auch zu/brief", "home/offen/brief"});
    BrowserServices services = world.services();
    const std::vector<Location> closed{world.home("auch zu"), world.home("zu")};
    services.search = [&](SearchMatches &matches, const FolderQuery &query, const JobControl *control) {
        FolderSearchResult found = searchInto(matches, query, control);
        found.gaps.folders = query.text == u"brief" ? closed : std::vector<Location>();
        return found;
    };
    BrowserModel pane(services, world.tree.path("home"));
    QWidget window;
    window.resize(600, 400);
    StatusBar bar(&window);
    bar.resize(600, 30);
    bar.setPane(&pane);
    window.show();
    auto *const details = bar.findChild<QPushButton *>(QStringLiteral("searchDetails"));
    const auto search = [&](const QString &text) {
        pane.setSearchText(text);
        pane.runSearch();
        EXPECT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    };
    EXPECT_FALSE(details->isVisible());
    search(QStringLiteral("offen"));
    EXPECT_FALSE(details->isVisible());
    search(QStringLiteral("brief"));
    ASSERT_TRUE(details->isVisible());
    EXPECT_TRUE(bar.rect().contains(details->geometry()));
    EXPECT_FALSE(pane.statusText.get().contains(u"lesbar"));

    QTest::mouseClick(details, Qt::LeftButton);
    auto *const sheet = window.findChild<DetailsSheet *>();
    ASSERT_TRUE(sheet && sheet->isVisible());
    EXPECT_EQ(sheet->accessibleName(), QStringLiteral("2 Ordner nicht lesbar"));
    QStringList texts;
    for (const TextLabel *const label : sheet->findChildren<TextLabel *>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(shown(closed[0]) + u'\n' + shown(closed[1]))) << texts.join(u'|').toStdString();
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_FALSE(sheet->isVisible());

    pane.navigate(world.home("offen"));
    EXPECT_FALSE(details->isVisible());
}

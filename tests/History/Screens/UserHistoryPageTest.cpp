#include "History/Screens/UserHistoryPage.h"

#include "Disk/SystemTrash.h"
#include "History/Screens/HistoryRows.h"
#include "Look/YesNoSheet.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class UserHistoryPageTest : public testing::Test {
protected:
    UserHistoryPageTest()
    {
        tree.lines({"Wand.png=bild", "Brief.txt=text", "Bilder/"});
        folders.home = tree.root();
        clock.time = std::chrono::floor<std::chrono::seconds>(SystemClock().now()) - std::chrono::hours(48);
        move(StepKind::Rename, "Wand.png", "Tapete.png");
        clock.time += std::chrono::hours(48);
        move(StepKind::Move, "Tapete.png", "Bilder/Tapete.png");
        move(StepKind::Rename, "Brief.txt", "Post.txt");
    }

    void move(StepKind kind, std::string_view from, std::string_view to)
    {
        clock.time += std::chrono::seconds(1);
        const Location source = tree.path(from);
        const Location target = tree.path(to);
        OpenStep step = records.begin(kind, {{source, target, EntryMark::of(source)}});
        std::filesystem::rename(source, target);
        step.settle({{source, target, {}, EntryMark::of(target)}});
    }

    void open()
    {
        page = std::make_unique<UserHistoryPage>(list, folders, clock, nullptr);
        page->resize(1000, 600);
        page->show();
        ASSERT_TRUE(waitUntil([&] { return !list.loading.get(); }));
    }

    template <class Widget>
    Widget *find(const char *name) const
    {
        auto *const found = page->findChild<Widget *>(QLatin1StringView(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    /// Headings with their rows: "Heute: …".
    QStringList rows() const
    {
        QStringList all;
        const auto *const shown = find<HistoryRows>("historyRows");
        for (int i = 0; i < shown->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *const heading = shown->topLevelItem(i);
            for (int j = 0; j < heading->childCount(); ++j)
                all << heading->text(0) + QStringLiteral(": ") + heading->child(j)->text(0);
        }
        return all;
    }

    void choose(int heading, int row) const
    {
        auto *const shown = find<HistoryRows>("historyRows");
        shown->setCurrentItem(shown->topLevelItem(heading)->child(row));
    }

    TempTree tree;
    FakeClock clock;
    MemoryUserDefaults defaults;
    KnownFolders folders = KnownFolders::ofThisUser();
    SystemVolumes volumes;
    DiskFileActions files;
    SystemTrash trash{tree.path("trash"), volumes};
    StepRecords records{tree.path("state/verlauf"), defaults, clock};
    UserUndo session{{files, trash, tree.path("logs"), tree.path("transfers"), &records}};
    HistoryList list{{records, defaults, {files, trash, tree.path("logs"), tree.path("transfers"), &records}, session}};
    std::unique_ptr<UserHistoryPage> page;
};

} // namespace

TEST_F(UserHistoryPageTest, showsDaysAndFiltersThem)
{
    open();
    const QString old =
        QLocale(QStringLiteral("de_DE")).toString(QDate::currentDate().addDays(-2), QStringLiteral("d. MMMM yyyy"));
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("Heute: „Brief.txt“ in „Post.txt“ umbenannt"),
                                   QStringLiteral("Heute: „Tapete.png“ verschoben"),
                                   old + QStringLiteral(": „Wand.png“ in „Tapete.png“ umbenannt")}));
    find<QComboBox>("historyKind")->setCurrentText(QStringLiteral("Umbenannt"));
    EXPECT_EQ(rows().size(), 2);
    auto *const folder = find<QComboBox>("historyFolder");
    folder->setCurrentText(QStringLiteral("~/Bilder"));
    EXPECT_TRUE(rows().isEmpty());
    find<QComboBox>("historyKind")->setCurrentIndex(0);
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(UserHistoryPageTest, findsAnEntryByAnOldNameAndBringsItBackByKeyboard)
{
    open();
    QTest::keyClicks(find<QLineEdit>("historyName"), QStringLiteral("wand"));
    ASSERT_TRUE(waitUntil([&] { return list.searched.get() == QStringLiteral("wand") && rows().size() == 2; }));
    auto *const shown = find<HistoryRows>("historyRows");
    EXPECT_EQ(shown->topLevelItem(0)->text(0), QStringLiteral("Tapete.png – Jetzt: ~/Bilder/Tapete.png"));
    QSignalSpy showing(page.get(), &UserHistoryPage::showRequested);
    QTest::keyClick(find<QLineEdit>("historyName"), Qt::Key_Return);
    shown->setCurrentItem(shown->topLevelItem(0));
    QTest::keyClick(shown, Qt::Key_Return);
    ASSERT_EQ(showing.size(), 1);
    EXPECT_EQ(showing.front().front().value<Location>(), tree.path("Bilder/Tapete.png"));
    EXPECT_FALSE(find<QPushButton>("historyBack")->isEnabled()) << "a heading is no step";

    choose(0, 1);
    find<QPushButton>("historyBack")->setFocus();
    QTest::keyClick(find<QPushButton>("historyBack"), Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return !list.takingBack.get() && tree.has("Tapete.png"); }));
    ASSERT_TRUE(
        waitUntil([&] { return !list.searching.get() && rows().filter(QStringLiteral("gemacht")).size() == 1; }));
    EXPECT_TRUE(shown->hasFocus());
    EXPECT_EQ(find<QLabel>("historyOutcome")->text(),
              QStringLiteral("Verschieben von „Tapete.png“ rückgängig gemacht."));
}

TEST_F(UserHistoryPageTest, keepsTheChosenEntryAndOpenedStepsWhenItChanges)
{
    clock.time += std::chrono::seconds(1);
    tree.lines({"x1", "x2"});
    records.begin(StepKind::BatchRename, {})
        .settle({{tree.path("alt1"), tree.path("x1"), {}, EntryMark::of(tree.path("x1"))},
                 {tree.path("alt2"), tree.path("x2"), {}, EntryMark::of(tree.path("x2"))}});
    open();
    auto *const shown = find<HistoryRows>("historyRows");
    const auto changes = [&](std::string_view from, std::string_view to) {
        move(StepKind::Rename, from, to);
        list.reload();
        return waitUntil([&] { return !list.loading.get() && !list.searching.get(); });
    };
    shown->topLevelItem(0)->child(0)->setExpanded(true);
    shown->setCurrentItem(shown->topLevelItem(0)->child(0)->child(1));
    const QString chosen = shown->currentItem()->text(0);
    ASSERT_TRUE(changes("Post.txt", "Brief.txt"));
    EXPECT_TRUE(shown->topLevelItem(0)->child(1)->isExpanded());
    ASSERT_EQ(shown->currentItem(), shown->topLevelItem(0)->child(1)->child(1));
    EXPECT_EQ(shown->currentItem()->text(0), chosen);

    QTest::keyClicks(find<QLineEdit>("historyName"), QStringLiteral("alt"));
    ASSERT_TRUE(waitUntil([&] { return list.trails.get().size() == 2; }));
    choose(1, 0);
    ASSERT_TRUE(changes("Brief.txt", "Post.txt"));
    EXPECT_EQ(shown->currentItem(), shown->topLevelItem(1)->child(0)) << "the other trail has the same step";
}

TEST_F(UserHistoryPageTest, saysWhyAStepIsNotTakenBack)
{
    open();
    tree.file("Brief.txt", "ein neuer");
    choose(0, 0);
    find<QPushButton>("historyBack")->click();
    ASSERT_TRUE(waitUntil([&] { return !list.takingBack.get() && !list.failures.get().isEmpty(); }));
    EXPECT_TRUE(find<QLabel>("historyOutcome")
                    ->text()
                    .startsWith(QStringLiteral("Das ließ sich nicht rückgängig machen.\nPost.txt: ")));
    EXPECT_EQ(tree.content("Brief.txt"), "ein neuer");
}

TEST_F(UserHistoryPageTest, clearsOnlyAfterAYesAndCanBeSwitchedOff)
{
    open();
    const auto answer = [&](const char *signal) {
        find<QPushButton>("historyClear")->click();
        auto *const question = find<YesNoSheet>("clearQuestion");
        QMetaObject::invokeMethod(question, signal);
        question->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    answer("declined");
    EXPECT_EQ(records.read().steps.size(), 3U);
    answer("accepted");
    ASSERT_TRUE(waitUntil([&] { return list.steps.get().empty() && !list.loading.get(); }));
    EXPECT_TRUE(find<QWidget>("historyEmpty")->isVisible());
    find<QCheckBox>("historyOn")->click();
    EXPECT_FALSE(list.on());
    move(StepKind::Rename, "Post.txt", "Brief.txt");
    EXPECT_TRUE(records.read().steps.empty());
}

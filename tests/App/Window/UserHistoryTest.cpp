#include "App/Window/WindowWorld.h"
#include "History/HistoryList.h"
#include "Records/StepRecords.h"

#include <QTreeWidget>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class UserHistoryTest : public WindowWorld {
protected:
    void SetUp() override { ASSERT_TRUE(services->records().clear()); }

    void restart()
    {
        delete window;
        window = nullptr;
        composition.reset();
        services = std::make_unique<Services>();
        composition = std::make_unique<WindowComposition>(*services, *desktop);
        open();
    }

    QTreeWidget *rowsOfPage() const { return shownOne<QTreeWidget>(QStringLiteral("historyRows")); }
};

} // namespace

TEST_F(UserHistoryTest, findsByNameWhereAFileWentAndBringsItBackAfterARestart)
{
    file("Wand.png");
    open();
    ASSERT_TRUE(rowsBecome({QStringLiteral("Wand.png")}));
    click(QStringLiteral("Wand.png"));
    key(Qt::Key_F2);
    type(QStringLiteral("Tapete"));
    key(Qt::Key_Return);
    ASSERT_TRUE(rowsBecome({QStringLiteral("Tapete.png")}));
    ASSERT_TRUE(waitUntil([&] { return composition->forWindows().undo.actions.get().size() == 1; }));
    EXPECT_FALSE(composition->forWindows().undo.actions.get().front().step.isNull());
    key(Qt::Key_Delete);
    ASSERT_TRUE(rowsBecome({}));
    ASSERT_TRUE(waitUntil([&] { return services->records().read().steps.size() == 2; }));

    restart();
    key(Qt::Key_H, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Verlauf"));
    type(QStringLiteral("wand"));
    ASSERT_TRUE(waitUntil([&] {
        return rowsOfPage() && rowsOfPage()->topLevelItem(0)->childCount() == 2 &&
               rowsOfPage()->topLevelItem(0)->text(0).endsWith(u"Jetzt: im Papierkorb");
    }));
    key(Qt::Key_Return);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    QTest::mouseClick(find<QPushButton>(QStringLiteral("historyBack")), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return has("Tapete.png"); }));
    ASSERT_TRUE(waitUntil([&] { return !composition->forWindows().history.takingBack.get(); }));
    window->run(CommandId::Back);
    EXPECT_TRUE(rowsBecome({QStringLiteral("Tapete.png")}));
}

TEST_F(UserHistoryTest, whatTheWindowTakesBackIsTakenBackInTheHistory)
{
    file("a.txt");
    open();
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    click(QStringLiteral("a.txt"));
    key(Qt::Key_Delete);
    ASSERT_TRUE(rowsBecome({}));
    ASSERT_TRUE(waitUntil([&] { return composition->forWindows().undo.title.get().has_value(); }));
    window->run(CommandId::Undo);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    EXPECT_TRUE(waitUntil([&] {
        const std::vector<RecordedStep> steps = services->records().read().steps;
        return steps.size() == 1 && steps.front().takenBack.has_value();
    }));
}

TEST_F(UserHistoryTest, itsPageFollowsTheUndoAndShowsWhatFailed)
{
    const auto message = [this] {
        const auto *const label = shownOne<QLabel>(QStringLiteral("pageMessage"));
        return label ? label->text() : QString();
    };
    const auto row = [this] {
        const QTreeWidget *const rows = rowsOfPage();
        return rows && rows->topLevelItem(0) ? rows->topLevelItem(0)->child(0)->text(0) : QString();
    };
    file("a.txt");
    open();
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    click(QStringLiteral("a.txt"));
    key(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return composition->forWindows().undo.title.get().has_value(); }));
    file("a.txt", "ein anderer");
    key(Qt::Key_H, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(waitUntil([&] { return row().endsWith(u"in den Papierkorb gelegt"); }));
    window->run(CommandId::Undo);
    EXPECT_TRUE(waitUntil([&] { return message().contains(u"Es gibt schon etwas"); })) << message().toStdString();

    std::filesystem::remove(folder / "a.txt");
    ASSERT_TRUE(waitUntil([&] { return !composition->forWindows().undo.running.get(); }));
    window->run(CommandId::Undo);
    EXPECT_TRUE(waitUntil([&] { return message().endsWith(u"rückgängig gemacht."); })) << message().toStdString();
    EXPECT_TRUE(waitUntil([&] { return row().endsWith(u"rückgängig gemacht"); })) << row().toStdString();
    window->run(CommandId::Back);
    EXPECT_TRUE(message().isEmpty());
}

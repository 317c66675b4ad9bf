#include "App/Window/WindowWorld.h"

#include "App/Window/FileCommands.h"
#include "App/Window/Notices.h"
#include "App/Window/Windows.h"
#include "Look/YesNoSheet.h"

#include <QSignalSpy>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Two windows of the program and one that belongs to neither, to test which one shows a question.
class QuestionsTest : public WindowWorld {
protected:
    void SetUp() override
    {
        elsewhere.setWindowTitle(QStringLiteral("elsewhere"));
        elsewhere.show();
    }
    void TearDown() override
    {
        delete second;
        WindowWorld::TearDown();
    }
    void openSecond()
    {
        StoredWindow from;
        from.tabs.push_back({QUuid::createUuid(), folder, std::nullopt});
        second = new MainWindow(composition->forWindows(), from);
        second->show();
        ASSERT_TRUE(goTo(*second));
    }
    static bool goTo(QWidget &there)
    {
        there.activateWindow();
        return QTest::qWaitForWindowActive(&there);
    }
    static YesNoSheet *sheetOver(const MainWindow *one, const char *name = "operationQuestion")
    {
        for (YesNoSheet *const sheet : one->findChildren<YesNoSheet *>(QLatin1String(name)))
            if (sheet->isVisible())
                return sheet;
        return nullptr;
    }
    static bool asks(const MainWindow *one)
    {
        return waitUntil([one] { return sheetOver(one) != nullptr; });
    }
    static bool isSilent(const MainWindow *one)
    {
        return waitUntil([one] { return sheetOver(one) == nullptr; });
    }
    static void click(const YesNoSheet *sheet, const char *button)
    {
        QTest::mouseClick(sheet->findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
    }
    FileOperations &operations() const { return composition->forWindows().operations; }

    QWidget elsewhere;
    QPointer<MainWindow> second;
};

TEST_F(QuestionsTest, aQuestionFindsTheUserAndStaysUntilItIsAnswered)
{
    operations().emptyTrash();
    operations().emptyTrash();
    open();
    EXPECT_TRUE(asks(window)) << "published while there was no window";
    openSecond();
    EXPECT_TRUE(asks(second));
    EXPECT_TRUE(isSilent(window));
    ASSERT_TRUE(goTo(elsewhere));
    EXPECT_TRUE(isSilent(second));
    ASSERT_TRUE(goTo(*second));
    ASSERT_TRUE(asks(second));
    second->close();
    ASSERT_TRUE(waitUntil([this] { return second.isNull(); }));
    ASSERT_TRUE(goTo(*window));
    ASSERT_TRUE(asks(window)) << "its window was closed";
    click(sheetOver(window), "cancel");
    EXPECT_TRUE(asks(window)) << "the next one, of the same wording";
    click(sheetOver(window), "cancel");
    EXPECT_TRUE(isSilent(window));
    EXPECT_FALSE(operations().question.get());
}

TEST_F(QuestionsTest, aQuestionComesAboveAnotherSheet)
{
    open();
    auto *const other = new SheetFrame(QStringLiteral("Anderes"), {}, {300, 200}, window);
    other->open();
    operations().emptyTrash();
    ASSERT_TRUE(asks(window));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("cancel"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(operations().question.get());
    EXPECT_TRUE(other->isVisible());
}

TEST_F(QuestionsTest, whatWentWrongIsToldWhereTheUserIsEveryTime)
{
    open();
    openSecond();
    QSignalSpy inFirst(window->findChild<FileCommands *>(), &FileCommands::failed);
    QSignalSpy inSecond(second->findChild<FileCommands *>(), &FileCommands::failed);
    QSignalSpy saidInSecond(second->findChild<FileCommands *>(), &FileCommands::said);
    const auto fail = [this] {
        operations().newTextDocument(folder / "fehlt");
        return waitUntil([this] { return operations().operations.get().empty(); });
    };
    ASSERT_TRUE(goTo(elsewhere));
    ASSERT_TRUE(fail());
    EXPECT_EQ(inFirst.size() + inSecond.size(), 0);
    ASSERT_TRUE(goTo(*second));
    ASSERT_TRUE(waitUntil([&] { return inSecond.size() == 1; }));
    const QString text = inSecond.front().front().toString();
    EXPECT_TRUE(text.contains(QStringLiteral("nicht mehr da"))) << text.toStdString();
    EXPECT_TRUE(composition->forWindows().notices.unread.get().isEmpty());

    file("a.txt");
    operations().trash({folder / "a.txt"});
    ASSERT_TRUE(waitUntil([&] { return saidInSecond.size() == 1; })) << "that it went well";
    ASSERT_TRUE(fail());
    EXPECT_EQ(inSecond.size(), 2) << "the same once more";
    EXPECT_EQ(inSecond.back().front().toString(), text) << "nothing takes it away again";
    EXPECT_EQ(inFirst.size(), 0);
}

TEST_F(QuestionsTest, aTransferWhoseWindowHasClosedTellsAnother)
{
    open();
    openSecond();
    QSignalSpy said(second->findChild<FileCommands *>(), &FileCommands::failed);
    window->findChild<FileCommands *>()->transfer({folder / "fehlt"}, folder, TransferKind::Copy, pane());
    delete std::exchange(window, nullptr);
    ASSERT_TRUE(waitUntil([&] { return said.size() == 1; }));
    EXPECT_TRUE(said.front().front().toString().contains(QStringLiteral("fehlt")));
}

TEST_F(QuestionsTest, theLastWindowAsksBeforeItEndsAnOperationAndQuittingAsksBeforeTheFirstGoes)
{
    // Sparse: needs no disk space, but packing it takes minutes.
    std::filesystem::resize_file(file("lang"), 64LL << 30);
    open();
    openSecond();
    operations().compress({folder / "lang"}, folder);
    second->close();
    ASSERT_TRUE(waitUntil([this] { return second.isNull(); })) << "it was not the last";
    ASSERT_TRUE(goTo(*window));
    auto *const sheet = new SheetFrame(QStringLiteral("Anderes"), {}, {300, 200}, window);
    sheet->open();
    window->close();
    ASSERT_TRUE(sheetOver(window, "closeQuestion"));
    click(sheetOver(window, "closeQuestion"), "cancel");
    ASSERT_EQ(operations().operations.get().size(), 1u) << "the test needs one under way";
    EXPECT_TRUE(window->isVisible());
    sheet->close();

    delete std::exchange(window, nullptr);
    Windows windows(composition->forWindows());
    windows.start({folder});
    const auto all = [] {
        QList<MainWindow *> open;
        for (QWidget *const one : QApplication::topLevelWidgets())
            if (auto *const found = qobject_cast<MainWindow *>(one); found && found->isVisible())
                open.append(found);
        return open;
    };
    ASSERT_EQ(all().size(), 1);
    ASSERT_TRUE(goTo(*all().front()));
    Q_EMIT all().front()->newWindowRequested(folder);
    ASSERT_EQ(all().size(), 2);
    ASSERT_EQ(operations().operations.get().size(), 1u) << "the test needs one under way";
    all().front()->run(CommandId::Quit);
    MainWindow *asking = nullptr;
    for (MainWindow *const one : all())
        asking = sheetOver(one, "closeQuestion") ? one : asking;
    ASSERT_TRUE(asking);
    EXPECT_EQ(all().size(), 2);
    QSignalSpy ended(&windows, &Windows::lastClosed);
    click(sheetOver(asking, "closeQuestion"), "accept");
    EXPECT_EQ(all().size(), 0);
    EXPECT_EQ(ended.size(), 1);
    operations().cancel(operations().operations.get().front().id);
    EXPECT_TRUE(waitUntil([this] { return operations().operations.get().empty(); }));
    EXPECT_TRUE(storeWindows(services->settings(), {})) << "the next test begins with none";
}

} // namespace

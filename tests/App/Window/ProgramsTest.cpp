#include "App/Window/WindowWorld.h"

#include "App/Window/ApplicationSheet.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QListWidget>
#include <QMenu>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Two programs, "Malen" and "Lesen", that record what they are called with; neither declares a type.
class RecordingPrograms {
protected:
    RecordingPrograms()
    {
        const Location data = qgetenv("XDG_DATA_HOME").toStdString();
        std::filesystem::create_directories(data / "applications");
        std::filesystem::create_directories(bin);
        for (const char *const name : {"malen", "lesen"}) {
            std::ofstream(bin / name) << "#!/bin/sh\nprintf '%s %s' " << name << " \"$1\" > '" << log().native()
                                      << "'\n";
            std::filesystem::permissions(bin / name, std::filesystem::perms::owner_all);
            std::ofstream(data / "applications" / (std::string(name) + ".desktop"))
                << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << name << " %f\n";
        }
        qputenv("PATH", QByteArray::fromStdString(bin.native()));
        qputenv("XDG_DATA_DIRS", "/nicht/da");
    }
    Location log() const { return bin / "gerufen"; }
    std::string called() const
    {
        std::ifstream stream(log());
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const QByteArray path = qgetenv("PATH");
    const QByteArray dataFolders = qEnvironmentVariableIsSet("XDG_DATA_DIRS")
                                       ? qgetenv("XDG_DATA_DIRS")
                                       : QByteArray("/usr/local/share:/usr/share");
    Location bin = Location(qgetenv("HOME").toStdString()) / "bin";
};

class ProgramsTest : private RecordingPrograms, public WindowWorld {
protected:
    /// The window has read both; the database of types needs the second.
    ProgramsTest()
    {
        qputenv("PATH", path);
        qputenv("XDG_DATA_DIRS", dataFolders);
    }

    ApplicationSheet *sheet() const { return window->findChild<ApplicationSheet *>(); }
    /// Through the context menu.
    void askFor(const QString &name) const
    {
        click(name);
        Q_EMIT details()->customContextMenuRequested(placeOf(name));
        auto *const menu = window->findChild<QMenu *>(QStringLiteral("contextMenu"));
        ASSERT_NE(menu, nullptr);
        auto *const programs = menu->findChild<QMenu *>(QStringLiteral("openWithMenu"));
        ASSERT_NE(programs, nullptr);
        Q_EMIT programs->aboutToShow();
        programs->actions().constLast()->trigger();
        menu->close();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    bool offers(int count) const
    {
        return waitUntil([&] { return sheet() && sheet()->findChild<QListWidget *>()->count() == count; });
    }
    bool calls(const std::string &line) const
    {
        return waitUntil([&] { return called() == line; });
    }
};

TEST_F(ProgramsTest, opensWithAnotherProgramAndAlwaysIfAsked)
{
    const Location a = file("a.txt");
    open();
    askFor(QStringLiteral("a.txt"));
    ASSERT_TRUE(offers(2));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("applicationSearch"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_TRUE(calls("malen " + a.native())) << "the second of the list";
    const Location list = Location(qgetenv("XDG_CONFIG_HOME").toStdString()) / "mimeapps.list";
    EXPECT_FALSE(std::filesystem::exists(list)) << "only this time";

    ASSERT_TRUE(waitUntil([this] { return !sheet(); }));
    askFor(QStringLiteral("a.txt"));
    ASSERT_TRUE(offers(2));
    type(QStringLiteral("lese"));
    QTest::mouseClick(sheet()->findChild<QCheckBox *>(), Qt::LeftButton, {}, QPoint(8, 8));
    key(Qt::Key_Return);
    EXPECT_TRUE(calls("lesen " + a.native()));
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(list); }));
    EXPECT_EQ(composition->forWindows().agent.workspace.applicationsFor(QStringLiteral("text/plain")).front().name,
              QStringLiteral("lesen"));
}

TEST_F(ProgramsTest, asksToUnpackAnArchiveThatNoProgramOpens)
{
    file("innen/x.txt", "inhalt");
    open();
    click(QStringLiteral("innen"));
    window->run(CommandId::Compress);
    ASSERT_TRUE(waitUntil([this] { return rows().contains(QStringLiteral("innen.zip")); }));
    std::filesystem::remove_all(folder / "innen");
    ASSERT_TRUE(rowsBecome({QStringLiteral("innen.zip")}));
    doubleClick(QStringLiteral("innen.zip"));
    const auto question = [this] { return shownOne<QWidget>(QStringLiteral("unpackQuestion")); };
    ASSERT_TRUE(waitUntil([&] { return question() != nullptr; }));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return question() == nullptr; }));
    EXPECT_FALSE(has("innen"));
    doubleClick(QStringLiteral("innen.zip"));
    ASSERT_TRUE(waitUntil([&] { return question() != nullptr; }));
    QTest::mouseClick(question()->findChild<QAbstractButton *>(QStringLiteral("accept")), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return has("innen/x.txt") || has("x.txt"); }));
    EXPECT_TRUE(has("innen.zip"));
}

} // namespace

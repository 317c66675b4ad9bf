#include "Sidebar/FolderTree.h"

#include "Sidebar/ExpandedFolders.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs code after a worker has finished and before its answer is delivered.
class BeforeNextAnswer : public QObject {
public:
    explicit BeforeNextAnswer(std::function<void()> act) : m_act(std::move(act))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::MetaCall || event->type() >= QEvent::User) {
            if (const std::function<void()> act = std::exchange(m_act, {}))
                act();
        }
        return false;
    }

private:
    std::function<void()> m_act;
};

class FolderTreeTest : public testing::Test {
protected:
    FolderTreeTest()
    {
        files.lines(
            {"home/b10/", "home/B9/tief/tiefer/", "home/a/x.txt=1", "home/.punkt/", "home/verweis->a", "platte/alt/"});
        tree.setRoots(roots());
    }
    std::vector<FolderTreeRoot> roots() const
    {
        return {{files.path("home"), QStringLiteral("Benutzerordner")},
                {files.path("platte"), QStringLiteral("Platte")}};
    }
    /// One line per row: indented by depth; "-" expanded, "+" collapsed, "." empty.
    static QString text(const FolderTree &tree)
    {
        QStringList lines;
        for (const FolderTreeRow &row : tree.rows.get())
            lines += QString(row.depth, u' ') + (row.expanded ? u'-' : row.expandable ? u'+' : u'.') + row.name;
        return lines.join(u'\n');
    }
    static bool shows(const FolderTree &tree, const QString &expected)
    {
        const bool shown = waitUntil([&] {
            return text(tree) == expected &&
                   std::ranges::none_of(tree.rows.get(), [](const FolderTreeRow &row) { return row.loading; });
        });
        EXPECT_TRUE(shown) << qPrintable(text(tree));
        return shown;
    }

    TempTree files;
    MemoryUserDefaults defaults;
    ExpandedFolders stored{defaults};
    FolderTree tree{stored};
};

} // namespace

TEST_F(FolderTreeTest, opensOnDemandInTheOrderOfPeople)
{
    EXPECT_EQ(text(tree), QStringLiteral("+Benutzerordner\n+Platte"));
    EXPECT_TRUE(tree.expand(files.path("home")));
    EXPECT_TRUE(tree.rows.get()[0].loading);
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n +B9\n +b10\n+Platte")));
    tree.setShowHidden(true);
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +.punkt\n +a\n +B9\n +b10\n+Platte")));
    tree.setShowHidden(false);
    EXPECT_TRUE(tree.expand(files.path("home/a")));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n -a\n +B9\n +b10\n+Platte")));
    EXPECT_FALSE(tree.rows.get()[1].expandable);
    EXPECT_TRUE(tree.collapse(files.path("home")));
    EXPECT_EQ(text(tree), QStringLiteral("+Benutzerordner\n+Platte"));
}

TEST_F(FolderTreeTest, followsThePaneAndRemembersWhatIsOpen)
{
    tree.reveal(files.path("home/B9/tief"));
    const QString open = QStringLiteral("-Benutzerordner\n +a\n -B9\n  +tief\n +b10\n+Platte");
    ASSERT_TRUE(shows(tree, open));
    EXPECT_TRUE(ExpandedFolders(defaults).stored().empty()) << "nobody asked for it";
    EXPECT_TRUE(tree.expand(files.path("home")));
    EXPECT_TRUE(tree.expand(files.path("home/B9")));

    ExpandedFolders kept(defaults);
    FolderTree next(kept);
    next.setRoots(roots());
    ASSERT_TRUE(shows(next, open));
    next.setRoots({roots()[1]});
    EXPECT_EQ(text(next), QStringLiteral("+Platte"));
    next.setRoots(roots());
    ASSERT_TRUE(shows(next, open)) << "a volume that comes back is as open as it was";
}

TEST_F(FolderTreeTest, foldsWhatThePaneHasLeft)
{
    const QString deep = QStringLiteral("-Benutzerordner\n +a\n -B9\n  -tief\n   +tiefer\n +b10\n+Platte");
    tree.reveal(files.path("home/B9/tief/tiefer"));
    ASSERT_TRUE(shows(tree, deep));
    tree.reveal(files.path("home/B9/tief"));
    EXPECT_EQ(text(tree), deep) << "up again: what lies inside stays in view";
    tree.reveal(files.path("home/a"));
    EXPECT_EQ(text(tree), QStringLiteral("-Benutzerordner\n +a\n +B9\n +b10\n+Platte"));
    tree.leave(files.path("platte/alt"));
    EXPECT_EQ(text(tree), QStringLiteral("+Benutzerordner\n+Platte"));

    // What the user has opened stays, and so does what it lies in.
    tree.reveal(files.path("home/B9/tief"));
    EXPECT_TRUE(tree.expand(files.path("home/B9/tief")));
    tree.reveal(files.path("platte/alt"));
    const QString both = QStringLiteral("-Benutzerordner\n +a\n -B9\n  -tief\n   +tiefer\n +b10\n-Platte\n +alt");
    ASSERT_TRUE(shows(tree, both));
    stored.reload();
    EXPECT_TRUE(ExpandedFolders(defaults).setExpanded({files.path("home/a")}, true));
    stored.reload();
    EXPECT_TRUE(shows(tree, QString(both).replace(QStringLiteral("+a\n"), QStringLiteral("-a\n"))))
        << "another program's change closes nothing that the pane shows";
}

TEST_F(FolderTreeTest, hearsOfNewAndVanishedFolders)
{
    tree.reveal(files.path("home/B9/tief"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n -B9\n  +tief\n +b10\n+Platte")));
    files.folder("home/neu");
    tree.reveal(files.path("home/neu"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n +B9\n +b10\n +neu\n+Platte")));
    std::filesystem::remove_all(files.path("home/B9"));
    tree.refresh(files.path("home"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n +b10\n +neu\n+Platte")));
    // A refresh during a read starts another read, which sees what the first one missed.
    const BeforeNextAnswer between([&] {
        files.folder("home/z");
        tree.refresh(files.path("home"));
    });
    tree.refresh(files.path("home"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n +b10\n +neu\n +z\n+Platte")));
}

TEST_F(FolderTreeTest, followsChangesInOpenBranches)
{
    tree.reveal(files.path("home/B9/tief"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n -B9\n  +tief\n +b10\n+Platte")));
    files.folder("home/B9/Programm.app");
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n -B9\n  +Programm.app\n  +tief\n +b10\n+Platte")));
    std::filesystem::rename(files.path("home/a"), files.path("home/c"));
    std::filesystem::remove_all(files.path("home/B9"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +b10\n +c\n+Platte")));
    // A branch that was closed meanwhile is read again when it is opened, and watched again.
    EXPECT_TRUE(tree.collapse(files.path("home")));
    files.folder("home/d");
    tree.reveal(files.path("home/d"));
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +b10\n +c\n +d\n+Platte")));
    files.folder("home/e");
    EXPECT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +b10\n +c\n +d\n +e\n+Platte")));
}

TEST_F(FolderTreeTest, aBranchThatIsGoneGoesWhenEverythingIsReadAgain)
{
    // More open folders than are watched.
    std::string above = "platte/alt";
    for (int depth = 0; depth < 40; ++depth)
        above += "/x";
    files.folder(above + "/letzter");
    tree.reveal(files.path(above + "/letzter"));
    const auto count = [&] { return static_cast<int>(tree.rows.get().size()); };
    ASSERT_TRUE(waitUntil([&] { return count() == 2 + 1 + 40 + 1; }));
    std::filesystem::remove_all(files.path(above));
    tree.refreshAll();
    EXPECT_TRUE(waitUntil([&] { return count() == 2 + 1 + 39; })) << count();
}

TEST_F(FolderTreeTest, followsAnotherProgramButNotAnotherWindow)
{
    FolderTree otherWindow(stored);
    otherWindow.setRoots(roots());
    EXPECT_TRUE(tree.expand(files.path("home")));
    stored.reload();
    ASSERT_TRUE(shows(tree, QStringLiteral("-Benutzerordner\n +a\n +B9\n +b10\n+Platte")));
    EXPECT_EQ(text(otherWindow), QStringLiteral("+Benutzerordner\n+Platte"));

    ExpandedFolders otherProgram(defaults);
    EXPECT_TRUE(otherProgram.setExpanded({files.path("home")}, false));
    EXPECT_TRUE(otherProgram.setExpanded({files.path("platte")}, true));
    stored.reload();
    const QString stands = QStringLiteral("+Benutzerordner\n-Platte\n +alt");
    EXPECT_TRUE(shows(tree, stands));
    EXPECT_TRUE(shows(otherWindow, stands));
    EXPECT_TRUE(defaults.replace(QStringLiteral("sidebarExpanded"), "[damaged"));
    stored.reload();
    EXPECT_EQ(text(tree), stands);
}

TEST_F(FolderTreeTest, saysThatWhatIsOpenIsNotStored)
{
    class Full : public MemoryUserDefaults {
        Result<void> update(const QString &,
                            const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &) override
        {
            return failure(Failure::system(ENOSPC));
        }
    } full;
    ExpandedFolders unwritable(full);
    FolderTree window(unwritable);
    window.setRoots(roots());
    EXPECT_FALSE(window.expand(files.path("platte")));
    EXPECT_TRUE(shows(window, QStringLiteral("+Benutzerordner\n-Platte\n +alt"))) << "open all the same";
    EXPECT_FALSE(window.collapse(files.path("platte")));
    EXPECT_EQ(text(window), QStringLiteral("+Benutzerordner\n+Platte"));
}

#include "FileOperations/FileOperations.h"
#include "Disk/SystemTrash.h"
#include "FileOperations/NewEntries.h"
#include "Support/FailingCalls.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;
using Answer = FileOperations::Answer;

namespace {

class QuietWorkspace : public Workspace {
public:
    bool hasApplication(const QString &) const override { return false; }
    Result<void> openApplication(const QString &) override { return {}; }
    Result<void> reveal(const Location &) override { return {}; }
    Result<void> open(const Location &) override { return {}; }
    std::vector<Application> applicationsFor(const QString &) const override { return {}; }
    Result<void> openWith(const std::vector<Location> &, const QString &) override { return {}; }
    Result<void> openTerminal(const Location &) override { return failure(QStringLiteral("Es gibt kein Terminal.")); }
};

/// Only the test's own tree is a volume, so that no real Trash is accessible.
class OneVolume : public SystemVolumes {
public:
    explicit OneVolume(Location root) : m_root(std::move(root)) {}
    Result<Location> top(const Location &) const override { return m_root; }
    std::vector<Volume> mounted() const override { return {{m_root, QStringLiteral("Test"), {}, true, false}}; }

private:
    Location m_root;
};

class FileOperationsTest : public testing::Test {
protected:
    FileOperationsTest() { tree.lines({"home/a.txt=eins", "home/b.txt=zwei", "home/ordner/tief=drei"}); }

    Location home(const char *name) const { return tree.path("home") / name; }
    bool settled()
    {
        return waitUntil([&] { return operations.operations.get().empty(); });
    }

    TempTree tree;
    OneVolume volumes{tree.root()};
    DiskFileActions files;
    SystemTrash trash{tree.path("trash"), volumes};
    SystemProcessRunner processes;
    QuietWorkspace workspace;
    UserUndo undo{{files, trash, tree.path("logs")}};
    FileOperations operations{{files, trash, volumes, processes, workspace, tree.path("trash"), undo, BRELLIN_BILD,
                               [this](const Location &entry) { return !isAtOrBelow(entry, tree.path("system")); }}};
    QObject receiver;
};

} // namespace

TEST_F(FileOperationsTest, makesDocumentsAndAliasesUnderFreeNames)
{
    tree.file("home/Neues Textdokument.txt", "schon da");
    std::vector<Location> made;
    operations.newTextDocument(tree.path("home"),
                               {&receiver, [&](const OperationOutcome &outcome) { made = outcome.places(); }});
    ASSERT_TRUE(settled());
    EXPECT_EQ(made, std::vector{home("Neues Textdokument (2).txt")});
    operations.makeAlias({home("a.txt"), home("gibt es nicht")}, tree.path("home"));
    ASSERT_TRUE(settled());
    EXPECT_EQ(std::filesystem::read_symlink(home("a.txt – Verknüpfung")), home("a.txt"));
    EXPECT_EQ(operations.errorMessage.get(),
              QStringLiteral("gibt es nicht: Die Datei oder der Ordner ist nicht mehr da."));
    const std::string longest(250, 'x');
    tree.file("home/" + longest, "lang");
    const OperationOutcome alias = makeAliases({home(longest.c_str()), home(longest.c_str())}, tree.path("home"));
    EXPECT_EQ(linesOf(alias.failures), QStringList());
    EXPECT_NE(alias.places()[0].native().find(" – Verknüpfung"), std::string::npos);
}

TEST_F(FileOperationsTest, trashesAndUndoes)
{
    const std::string before = snapshotOf(tree.path("home"));
    operations.trash({home("a.txt"), home("fehlt"), home("ordner")});
    ASSERT_TRUE(settled());
    EXPECT_EQ(operations.errorMessage.get(), QStringLiteral("fehlt: Die Datei oder der Ordner ist nicht mehr da."));
    EXPECT_EQ(undo.title.get(), QStringLiteral("Legen von 2 Elementen in den Papierkorb rückgängig"));
    EXPECT_FALSE(tree.has("home/a.txt"));
    undo.undo();
    ASSERT_TRUE(waitUntil([&] { return !undo.running.get(); }));
    EXPECT_EQ(snapshotOf(tree.path("home")), before);
}

TEST_F(FileOperationsTest, emptiesEveryTrashOnlyWhenTheAnswerIsYes)
{
    ASSERT_TRUE(trash.put(home("a.txt")));
    ::chmod(home("ordner/tief").c_str(), 0);
    ASSERT_TRUE(trash.put(home("ordner")));
    ::chmod(tree.path("trash/files/ordner").c_str(), 0500); // not writable: cannot be emptied as it is
    const std::string user = std::to_string(::geteuid());
    tree.lines({"auswärts=bleibt"});
    tree.file(".Trash-" + user + "/files/alt", "vom Stick");
    tree.file(".Trash-" + user + "/info/alt.trashinfo", "[Trash Info]\nPath=alt\n");
    tree.link(".Trash-" + user + "/files/zeiger", "../../auswärts");
    operations.emptyTrash(TrashAmount{3, 12'000, false});
    EXPECT_EQ(operations.question.get()->message, QStringLiteral("Papierkorb wirklich leeren?"));
    EXPECT_TRUE(operations.question.get()->information.startsWith(QStringLiteral("3 Elemente, mindestens 12 KB.")))
        << operations.question.get()->information.toStdString();
    operations.answer(Answer::Cancel);
    EXPECT_EQ(operations.question.get(), std::nullopt);
    EXPECT_TRUE(operations.operations.get().empty());
    EXPECT_TRUE(tree.has("trash/files/a.txt"));

    operations.emptyTrash();
    operations.answer(Answer::Accept);
    ASSERT_TRUE(settled());
    EXPECT_EQ(operations.status.get(), QStringLiteral("Papierkorb geleert."));
    for (const std::string &folder : {std::string("trash"), ".Trash-" + user}) {
        EXPECT_TRUE(std::filesystem::is_empty(tree.path(folder) / "files")) << folder;
        EXPECT_TRUE(std::filesystem::is_empty(tree.path(folder) / "info")) << folder;
    }
    EXPECT_EQ(tree.content("auswärts"), "bleibt");
}

TEST_F(FileOperationsTest, deletesForGoodOnlyWhatTheTrashHoldsOrCannotTake)
{
    operations.deleteForGood({home("a.txt")});
    ASSERT_TRUE(settled());
    EXPECT_EQ(operations.question.get(), std::nullopt);
    EXPECT_EQ(operations.errorMessage.get(), QStringLiteral("a.txt: Das lässt sich in den Papierkorb legen."));

    const Location trashed = *trash.put(home("ordner"));
    operations.deleteForGood({trashed, home("b.txt")});
    ASSERT_TRUE(waitUntil([&] { return operations.question.get().has_value(); }));
    EXPECT_EQ(operations.question.get()->message, QStringLiteral("„ordner“ endgültig löschen?"));
    EXPECT_TRUE(operations.question.get()->information.contains(QStringLiteral("b.txt")));
    EXPECT_TRUE(operations.question.get()->information.startsWith(QStringLiteral("Größe: ")))
        << operations.question.get()->information.toStdString();
    EXPECT_TRUE(std::filesystem::exists(trashed));
    operations.answer(Answer::Accept);
    ASSERT_TRUE(settled());
    EXPECT_FALSE(std::filesystem::exists(trashed));
    EXPECT_FALSE(tree.has("trash/info/ordner.trashinfo"));
    EXPECT_TRUE(tree.has("home/b.txt"));
}

TEST_F(FileOperationsTest, deletesNothingElseThanWasAskedAbout)
{
    const TrashGround ground{tree.path("trash"), volumes};
    const Location trashed = *trash.put(home("a.txt"));
    const Doomed doomed = deletableForGood({trashed, tree.root(), tree.path("trash")}, ground);
    EXPECT_EQ(doomed.entries.size(), 1U);
    EXPECT_EQ(doomed.refused.size(), 2); // the Trash itself is never deleted
    std::filesystem::rename(trashed, tree.path("weg"));
    tree.file("trash/files/a.txt", "anderes");
    JobControl control;
    EXPECT_EQ(linesOf(deleteForGood(doomed.entries, trash, ground, control).failures),
              QStringList(QStringLiteral("a.txt: Dort liegt inzwischen etwas anderes.")));
    EXPECT_EQ(tree.content("trash/files/a.txt"), "anderes");
    // If the volume has no Trash, the user may delete permanently.
    const TrashGround none{tree.path("home/b.txt/nirgends"), volumes};
    std::filesystem::permissions(tree.root(), std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::remove);
    if (::geteuid() != 0) {
        EXPECT_EQ(deletableForGood({home("ordner")}, none).entries.size(), 1U);
    }
    std::filesystem::permissions(tree.root(), std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
}

TEST_F(FileOperationsTest, sparesWhatCameIntoADoomedFolderAfterTheQuestion)
{
    const TrashGround ground{tree.path("trash"), volumes};
    const Location trashed = *trash.put(home("ordner"));
    tree.file("trash/files/ordner/alt.txt", "alt");
    const Doomed doomed = deletableForGood({trashed}, ground);
    tree.file("trash/files/ordner/neu.txt", "neu");
    JobControl control;
    EXPECT_EQ(linesOf(deleteForGood(doomed.entries, trash, ground, control).failures),
              QStringList(QStringLiteral("ordner: Inzwischen kam etwas dazu oder wurde geändert; das bleibt: "
                                         "„neu.txt“")));
    EXPECT_EQ(tree.content("trash/files/ordner/neu.txt"), "neu");
    EXPECT_FALSE(tree.has("trash/files/ordner/alt.txt"));
    EXPECT_TRUE(tree.has("trash/info/ordner.trashinfo"));
    EXPECT_EQ(linesOf(deleteForGood(deletableForGood({trashed}, ground).entries, trash, ground, control).failures),
              QStringList());
    EXPECT_FALSE(tree.has("trash/info/ordner.trashinfo"));
}

TEST_F(FileOperationsTest, deletesNoFolderForGoodThatItCannotReadCompletely)
{
    const TrashGround ground{tree.path("trash"), volumes};
    const Location trashed = *trash.put(home("ordner"));
    Doomed doomed;
    const bool failed = runWithFailingCalls(
        SYS_getdents64, [](int) { return EACCES; }, [&] { doomed = deletableForGood({trashed}, ground); });
    if (!failed)
        GTEST_SKIP() << "system calls cannot fail on purpose here";
    EXPECT_TRUE(doomed.entries.empty());
    ASSERT_EQ(linesOf(doomed.refused).size(), 1);
    EXPECT_TRUE(
        linesOf(doomed.refused).front().startsWith(u"ordner: Was darin liegt, lässt sich nicht ganz ansehen: "));
    // What comes into the folder after the question is spared, so nothing at all may be deleted here.
    JobControl control;
    tree.file("trash/files/ordner/neu.txt", "neu");
    std::ignore = deleteForGood(doomed.entries, trash, ground, control);
    EXPECT_EQ(tree.content("trash/files/ordner/neu.txt"), "neu");
}

TEST_F(FileOperationsTest, packsUnpacksAndTakesBoth)
{
    operations.compress({home("a.txt"), home("b.txt")}, tree.path("home"));
    ASSERT_TRUE(settled());
    ASSERT_TRUE(tree.has("home/Archiv.zip"));
    operations.unpack(home("Archiv.zip"), tree.path("home"));
    ASSERT_TRUE(settled());
    EXPECT_EQ(tree.content("home/Archiv/b.txt"), "zwei");
    EXPECT_EQ(undo.title.get(), QStringLiteral("Entpacken von „Archiv“ rückgängig"));
    for (int i = 0; i < 2; ++i) {
        undo.undo();
        ASSERT_TRUE(waitUntil([&] { return !undo.running.get(); }));
    }
    EXPECT_FALSE(tree.has("home/Archiv.zip"));
    EXPECT_FALSE(tree.has("home/Archiv"));
    EXPECT_TRUE(tree.has("trash/files/Archiv.zip"));
    operations.openTerminal(tree.path("home"));
    ASSERT_TRUE(settled());
    EXPECT_EQ(operations.errorMessage.get(), QStringLiteral("home: Es gibt kein Terminal."));
}

TEST_F(FileOperationsTest, changesNothingThatBelongsToTheSystem)
{
    tree.lines({"system/kern=wichtig"});
    const std::string before = snapshotOf(tree.path("system"));
    const Location folder = tree.path("system");
    const std::vector<std::function<void()>> attempts{
        [&] { operations.trash({home("a.txt"), folder / "kern"}); },
        [&] { operations.newTextDocument(folder); },
        [&] { operations.compress({home("a.txt")}, folder); },
        [&] { operations.makeAlias({home("a.txt")}, folder); },
        [&] { operations.deleteForGood({folder / "kern"}); },
    };
    for (const std::function<void()> &attempt : attempts) {
        operations.dismissError();
        attempt();
        ASSERT_TRUE(settled());
        EXPECT_TRUE(operations.errorMessage.get()->endsWith(u"Orte des Systems werden nicht verändert."));
    }
    EXPECT_EQ(snapshotOf(folder), before);
    EXPECT_TRUE(tree.has("home/a.txt"));
}

#include "Disk/SystemTrash.h"
#include "FileOperations/FileOperations.h"
#include "FileOperations/NewEntries.h"
#include "FileOperations/UserUndo.h"
#include "Support/Faults.h"
#include "Support/FuseMount.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "Transfers/Leftovers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;
using Kind = UserAction::Kind;

namespace {

/// A home and a second volume in one tree.
class UndoTest : public testing::Test {
protected:
    UndoTest() { tree.lines({"home/a.txt=eins", "home/b.txt=zwei", "home/ordner/tief=drei", "disk/alt=vier"}); }

    Location home(const char *name) const { return tree.path("home") / name; }
    Location disk(const char *name) const { return tree.path("disk") / name; }
    std::string snapshot() const { return snapshotOf(tree.path("home")) + snapshotOf(tree.path("disk")); }

    /// The second disk has a Trash of its own.
    std::string outsideTheTrash() const
    {
        std::istringstream lines(snapshot());
        std::string kept;
        for (std::string line; std::getline(lines, line);)
            kept += line.starts_with(".Trash") ? "" : line + "\n";
        return kept;
    }

    std::set<std::string> contentsOf(const std::vector<const char *> &folders) const
    {
        std::set<std::string> all;
        for (const char *folder : folders) {
            const Location place = tree.path(folder);
            if (!entryExists(place))
                continue;
            for (const auto &entry : std::filesystem::recursive_directory_iterator(place)) {
                if (entry.is_regular_file())
                    all.insert(tree.content(entry.path().lexically_relative(tree.root()).native()));
            }
        }
        return all;
    }

    UndoneAction undo(Kind kind, const std::vector<UserAction::Entry> &entries)
    {
        JobControl control;
        return undoAction({kind, entries}, services, control);
    }

    TempTree tree;
    SplitVolumes volumes{tree.path("disk")};
    FaultPlan faults;
    FaultyFileActions files{faults, volumes};
    SystemTrash realTrash{tree.path("trash"), volumes};
    FaultyTrash trash{faults, realTrash};
    UndoServices services{files, trash, tree.path("logs"), tree.path("transfers")};
};

} // namespace

TEST_F(UndoTest, takesEveryKindBack)
{
    const std::string before = snapshot();
    std::filesystem::rename(home("a.txt"), home("neu.txt"));
    EXPECT_EQ(linesOf(undo(Kind::Rename, {recordOf(home("a.txt"), home("neu.txt"))}).failures), QStringList());
    EXPECT_EQ(snapshot(), before);

    std::filesystem::rename(home("a.txt"), home("ordner/a.txt"));
    std::filesystem::rename(home("b.txt"), home("ordner/b.txt"));
    EXPECT_EQ(
        undo(Kind::Move, {recordOf(home("a.txt"), home("ordner/a.txt")), recordOf(home("b.txt"), home("ordner/b.txt"))})
            .undone.size(),
        2U);
    EXPECT_EQ(snapshot(), before);

    const Result<Location> trashed = realTrash.put(home("ordner"));
    EXPECT_EQ(linesOf(undo(Kind::Trash, {recordOf(home("ordner"), *trashed)}).failures), QStringList());
    EXPECT_EQ(snapshot(), before);

    std::filesystem::copy(home("a.txt"), home("kopie.txt"));
    tree.folder("home/leer");
    const Result<Location> text = createTextDocument(tree.path("home"));
    const OperationOutcome alias = makeAliases({home("a.txt")}, tree.path("home"));
    undo(Kind::Copy, {recordOf(home("a.txt"), home("kopie.txt"))});
    undo(Kind::NewFolder, {recordOf({}, home("leer"))});
    undo(Kind::NewFile, {recordOf({}, *text)});
    undo(Kind::Alias, alias.action.entries);
    EXPECT_EQ(snapshot(), before);
    EXPECT_TRUE(tree.has("trash/files/kopie.txt"));
    EXPECT_FALSE(tree.has("trash/files/leer")); // an empty folder is removed instead of trashed
}

TEST_F(UndoTest, bringsBackWhatCrossedVolumesAndWhatItReplaced)
{
    const Result<Location> replaced = realTrash.put(disk("alt"));
    std::filesystem::rename(home("ordner"), disk("alt"));
    UserAction::Entry moved = recordOf(home("ordner"), disk("alt"));
    moved.replaced = *replaced;
    for (int n = 0;; ++n) {
        const std::string before = snapshot();
        faults = FaultPlan();
        faults.failAt = n;
        const UndoneAction undone = undo(Kind::Move, {moved});
        if (undone.left.empty() && undone.failures.isEmpty())
            break;
        if (!undone.left.empty()) {
            EXPECT_EQ(snapshot(), before) << n;
            continue;
        }
        // Restored, or still there and reported.
        EXPECT_EQ(tree.content("home/ordner/tief"), "drei");
        std::filesystem::remove_all(home("ordner"));
        if (!tree.has("disk/alt"))
            std::filesystem::rename(*realTrash.find(disk("alt"), moved.state.identity), disk("alt"));
        ASSERT_LT(n, 12);
    }
    EXPECT_EQ(tree.content("home/ordner/tief"), "drei");
    EXPECT_EQ(tree.content("disk/alt"), "vier");
}

TEST_F(UndoTest, killedOnItsWayLeavesNothingThatIsNotOffered)
{
    for (const bool reserving : {false, true}) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE(n);
            ASSERT_LT(n, 100);
            for (const char *folder : {"home", "disk", "trash", "transfers"})
                std::filesystem::remove_all(tree.path(folder));
            tree.lines({"home/neu.txt=eins", "disk/ordner/tief=drei", "disk/b.txt=zwei", "trash/"});
            const std::vector<UserAction::Entry> moved{recordOf(home("b.txt"), disk("b.txt")),
                                                       recordOf(home("ordner"), disk("ordner"))};
            const UserAction::Entry renamed = recordOf(home("a.txt"), home("neu.txt"));
            const pid_t child = ::fork();
            if (child == 0) {
                faults = FaultPlan();
                faults.killAt = n;
                files.reserving = reserving;
                undo(Kind::Rename, {renamed});
                undo(Kind::Move, moved);
                ::_exit(0);
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            const std::vector<Location> left = loggedLeftovers(services.transferLogs);
            EXPECT_EQ(linesOf(removeTransferLeftovers(left, services.transferLogs, SystemClock(), files)),
                      QStringList());
            const std::string all = snapshot() + snapshotOf(tree.path("trash"));
            EXPECT_EQ(all.find(".brellin-kopie"), std::string::npos) << all;
            for (const char *name : {"a.txt", "b.txt"})
                EXPECT_TRUE(!entryExists(home(name)) || !std::filesystem::is_empty(home(name))) << name;
            const std::set<std::string> contents = contentsOf({"home", "disk", "trash/files"});
            EXPECT_TRUE(std::ranges::includes(contents, std::set<std::string>{"eins", "zwei", "drei"}));
            if (WIFEXITED(status))
                break;
        }
    }
}

TEST_F(UndoTest, bringsBackWhatWasWorkedOnAtTheOtherVolume)
{
    const auto moved = [&] { return recordOf(home("a.txt"), disk("a.txt")); };
    std::filesystem::rename(home("a.txt"), disk("a.txt"));
    UserAction::Entry entry = moved();
    tree.file("disk/a.txt", "weitergeschrieben");
    EXPECT_EQ(linesOf(undo(Kind::Move, {entry}).failures), QStringList());
    EXPECT_EQ(tree.content("home/a.txt"), "weitergeschrieben");
    EXPECT_FALSE(tree.has("disk/a.txt"));

    // Changes made while it is copied back are not in the copy.
    std::filesystem::rename(home("a.txt"), disk("a.txt"));
    std::filesystem::rename(home("ordner"), disk("ordner"));
    files.afterCopy = [&](const Location &source, const Location &) {
        tree.file(source == disk("a.txt") ? "disk/a.txt" : "disk/ordner/neu", "währenddessen");
    };
    const UndoneAction undone = undo(Kind::Move, {moved(), recordOf(home("ordner"), disk("ordner"))});
    EXPECT_EQ(undone.undone.size(), 2U);
    EXPECT_EQ(linesOf(undone.failures),
              (QStringList{QStringLiteral("ordner: Zurückkopiert; „ordner“ blieb auch dort liegen. "
                                          "Das hat sich inzwischen geändert."),
                           QStringLiteral("a.txt: Zurückkopiert; „a.txt“ blieb auch dort liegen. "
                                          "Das hat sich inzwischen geändert.")}));
    EXPECT_EQ(tree.content("disk/a.txt") + tree.content("disk/ordner/neu"), "währenddessenwährenddessen");
    EXPECT_EQ(tree.content("home/a.txt"), "weitergeschrieben");
}

TEST_F(UndoTest, leavesAloneWhatIsNoLongerTheSame)
{
    const UserAction::Entry renamed = recordOf(home("x.txt"), home("a.txt"));
    const UserAction::Entry gone = recordOf(home("y.txt"), home("b.txt"));
    std::filesystem::copy(home("ordner/tief"), home("kopie"));
    const UserAction::Entry copied = recordOf(home("ordner/tief"), home("kopie"));
    std::filesystem::remove(home("b.txt"));
    tree.file("home/anders", "fremd");
    std::filesystem::rename(home("anders"), home("a.txt"));
    tree.file("home/kopie", "weitergeschrieben");
    const std::string before = snapshot();
    const UndoneAction undone = undo(Kind::Move, {renamed, gone});
    EXPECT_EQ(linesOf(undone.failures),
              (QStringList{QStringLiteral("b.txt: Die Datei oder der Ordner ist nicht mehr da."),
                           QStringLiteral("a.txt: Dort liegt inzwischen etwas anderes.")}));
    EXPECT_EQ(undone.failures.front().entry, home("b.txt"));
    EXPECT_TRUE(undone.failures.front().why.is(std::errc::no_such_file_or_directory));
    EXPECT_TRUE(undone.left.empty()); // a retry would not help
    EXPECT_EQ(undo(Kind::Copy, {copied}).failures.size(), 1);
    EXPECT_EQ(snapshot(), before);
}

TEST_F(UndoTest, sparesWhatWasAddedToAFolderThatWasMade)
{
    tree.lines({"home/kopie/tief=drei", "home/kopie/innen/tiefer=vier", "home/neu/"});
    const UserAction::Entry copied = recordOfMade(home("ordner"), home("kopie"));
    const UserAction::Entry made = recordOfMade({}, home("neu"));
    tree.lines({"home/kopie/innen/Abgabe.txt=seit gestern", "home/neu/Notiz.txt=meins"});
    const std::string before = snapshot();
    EXPECT_EQ(linesOf(undo(Kind::Copy, {copied}).failures),
              QStringList(QStringLiteral("kopie: Darin kam inzwischen etwas dazu oder wurde geändert („Abgabe.txt“). "
                                         "Der Ordner bleibt.")));
    EXPECT_EQ(undo(Kind::NewFolder, {made}).failures.size(), 1);
    std::filesystem::remove(home("kopie/innen/Abgabe.txt"));
    tree.file("home/kopie/tief", "geändert");
    EXPECT_EQ(undo(Kind::Unpack, {copied}).failures.size(), 1);
    EXPECT_EQ(tree.content("home/kopie/tief"), "geändert");
    EXPECT_EQ(tree.content("home/neu/Notiz.txt"), "meins");

    // Entries removed from it do not keep it from being trashed.
    std::filesystem::remove(home("kopie/tief"));
    EXPECT_EQ(linesOf(undo(Kind::Copy, {copied}).failures), QStringList());
    EXPECT_TRUE(tree.has("trash/files/kopie/innen/tiefer"));
    // A copy whose content was not recorded is kept.
    tree.lines({"home/kopie/tief=drei"});
    EXPECT_EQ(undo(Kind::Copy, {recordOf(home("ordner"), home("kopie"))}).failures.size(), 1);
    EXPECT_TRUE(tree.has("home/kopie/tief"));
}

TEST_F(UndoTest, knowsWhatWasReplacedWhereNumbersChange)
{
    const Location card = tree.path("karte");
    tree.folder("karte");
    const FuseMount mount(card);
    if (!mount)
        GTEST_SKIP() << "no such volume here";
    tree.lines({"karte/a.txt=eins", "karte/b.txt=zwei"});
    SystemTrash onCard(card / "papierkorb", volumes);
    const UndoServices there{files, onCard, tree.path("logs"), tree.path("transfers")};
    const Result<Location> replaced = onCard.put(card / "a.txt");
    ASSERT_TRUE(replaced);
    std::filesystem::copy(card / "b.txt", card / "a.txt");
    UserAction::Entry copied = recordOfMade(card / "b.txt", card / "a.txt");
    copied.replaced = *replaced;
    copied.replacedMark = EntryMark::of(*replaced);
    copied.replacedMark->state.identity.inode += 7;
    JobControl control;
    EXPECT_EQ(linesOf(undoAction({Kind::Copy, {copied}}, there, control).failures), QStringList());
    EXPECT_EQ(tree.content("karte/a.txt"), "eins");
}

TEST_F(UndoTest, knowsAnEntryWhereNumbersChange)
{
    const Location card = tree.folder("karte");
    const FuseMount mount(card);
    if (!mount)
        GTEST_SKIP() << "no such volume here";
    tree.lines({"karte/neu.txt=eins", "karte/ordner/tief=zwei", "karte/stapel.txt=drei", "karte/kopie=vier"});
    SystemTrash onCard(card / "papierkorb", volumes);
    const UndoServices there{files, onCard, tree.path("logs"), tree.path("transfers")};
    UserAction::Entry file = recordOf(card / "a.txt", card / "neu.txt");
    UserAction::Entry folder = recordOf(card / "alt", card / "ordner");
    UserAction::Entry batch = recordOf(card / "b.txt", card / "stapel.txt");
    UserAction::Entry made = recordOf(card / "woanders", card / "kopie");
    for (UserAction::Entry *const one : {&file, &folder, &batch, &made})
        one->state.identity.inode += 1000; // as after reinserting the card
    EXPECT_EQ(linesOf(undo(Kind::Rename, {file}).failures), QStringList());
    EXPECT_EQ(linesOf(undo(Kind::Move, {folder}).failures), QStringList());
    EXPECT_EQ(linesOf(undo(Kind::BatchRename, {batch}).failures), QStringList());
    JobControl control;
    EXPECT_EQ(linesOf(undoAction({Kind::Copy, {made}}, there, control).failures), QStringList());
    EXPECT_FALSE(tree.has("karte/kopie"));
    EXPECT_EQ(tree.content("karte/a.txt"), "eins");
    EXPECT_EQ(tree.content("karte/alt/tief"), "zwei");
    EXPECT_EQ(tree.content("karte/b.txt"), "drei");
    tree.file("karte/neu.txt", "anderes");
    EXPECT_EQ(undo(Kind::Rename, {file}).undone.size(), 0U);
    tree.file("karte/stapel.txt", "anderes");
    std::filesystem::remove(card / "b.txt");
    EXPECT_TRUE(undo(Kind::BatchRename, {batch}).undone.empty());
}

TEST_F(UndoTest, bringsBackOnlyTheVeryEntryThatWasReplaced)
{
    const Result<Location> replaced = realTrash.put(home("a.txt"));
    std::filesystem::copy(home("b.txt"), home("a.txt"));
    UserAction::Entry copied = recordOfMade(home("b.txt"), home("a.txt"));
    copied.replaced = *replaced;
    copied.replacedMark = EntryMark::of(*replaced);
    // The Trash is emptied, and another file from the same location gets the name.
    std::filesystem::remove(*replaced);
    std::filesystem::remove(tree.path("trash/info/a.txt.trashinfo"));
    std::filesystem::rename(home("a.txt"), home("beiseite"));
    tree.file("home/a.txt", "ein anderes");
    ASSERT_EQ(realTrash.put(home("a.txt")).value(), *replaced);
    std::filesystem::rename(home("beiseite"), home("a.txt"));
    EXPECT_EQ(linesOf(undo(Kind::Copy, {copied}).failures),
              QStringList(QStringLiteral("a.txt: Was ersetzt worden war, liegt nicht mehr im Papierkorb.")));
    EXPECT_FALSE(tree.has("home/a.txt"));
    EXPECT_EQ(tree.content("trash/files/a.txt"), "ein anderes");

    // A reused inode is not the renamed entry.
    UserAction::Entry renamed = recordOf(home("x.txt"), home("b.txt"));
    renamed.created = *renamed.created - std::chrono::seconds(5);
    EXPECT_EQ(linesOf(undo(Kind::Rename, {renamed}).failures),
              QStringList(QStringLiteral("b.txt: Dort liegt inzwischen etwas anderes.")));
}

TEST_F(UndoTest, neverReplacesWhatHasTakenTheOldPlace)
{
    std::filesystem::rename(home("a.txt"), home("neu.txt"));
    tree.file("home/a.txt", "anderes");
    const UserAction::Entry entry = recordOf(home("a.txt"), home("neu.txt"));
    const std::string before = snapshot();
    EXPECT_EQ(undo(Kind::Rename, {entry}).left, std::vector{entry});
    EXPECT_EQ(snapshot(), before);
    const Result<Location> trashed = realTrash.put(home("b.txt"));
    tree.file("home/b.txt", "anderes");
    EXPECT_EQ(undo(Kind::Trash, {recordOf(home("b.txt"), *trashed)}).left.size(), 1U);
    EXPECT_EQ(tree.content("home/b.txt"), "anderes");
    EXPECT_TRUE(std::filesystem::exists(*trashed));
}

TEST_F(UndoTest, theModelKeepsTheNewestAndSaysWhatWillHappen)
{
    UserUndo model(services);
    model.record({Kind::Rename, {}});
    EXPECT_EQ(model.title.get(), std::nullopt);
    for (int i = 0; i < 105; ++i)
        model.record({Kind::Move, {recordOf(home("ordner"), disk("alt")), recordOf(home("b.txt"), disk("alt"))}});
    EXPECT_EQ(model.actions.get().size(), 100U);
    EXPECT_EQ(model.title.get(), QStringLiteral("Verschieben von 2 Elementen rückgängig"));
    std::filesystem::rename(home("a.txt"), home("neu.txt"));
    model.record({Kind::Rename, {recordOf(home("a.txt"), home("neu.txt"))}});
    EXPECT_EQ(model.title.get(), QStringLiteral("Umbenennen von „a.txt“ rückgängig"));
    EXPECT_EQ(undoLines(model.actions.get().front()), QStringList(QStringLiteral("„neu.txt“ heißt wieder „a.txt“")));

    model.undo();
    EXPECT_TRUE(model.running.get());
    model.undo(); // one at a time
    ASSERT_TRUE(waitUntil([&] { return !model.running.get(); }));
    EXPECT_EQ(model.status.get(), QStringLiteral("Umbenennen von „a.txt“ rückgängig gemacht."));
    EXPECT_EQ(model.restored.get(), std::vector{home("a.txt")});
    EXPECT_EQ(model.actions.get().size(), 99U);

    tree.file("home/c.txt", "fünf");
    model.record({Kind::Rename, {recordOf(home("b.txt"), home("c.txt"))}});
    model.undo();
    ASSERT_TRUE(waitUntil([&] { return !model.running.get(); }));
    EXPECT_TRUE(model.errorMessage.get()->startsWith(u"c.txt: Es gibt schon etwas mit diesem Namen."));
    EXPECT_EQ(model.status.get(), QStringLiteral("Umbenennen von „b.txt“ ließ sich nicht rückgängig machen."));
    EXPECT_EQ(model.title.get(), QStringLiteral("Umbenennen von „b.txt“ rückgängig")); // stays, for another attempt
    std::filesystem::rename(home("c.txt"), home("weg.txt"));
    model.undo();
    ASSERT_TRUE(waitUntil([&] { return !model.running.get(); }));
    EXPECT_EQ(model.status.get(), QStringLiteral("Umbenennen von „b.txt“ ließ sich nicht rückgängig machen."))
        << "what is gone for good";
}

TEST_F(UndoTest, doesAgainWhatWasTakenBackUntilSomethingElseIsDone)
{
    UserUndo model(services);
    const auto settled = [&] { return waitUntil([&] { return !model.running.get(); }); };
    std::filesystem::rename(home("a.txt"), home("neu.txt"));
    model.record({Kind::Rename, {recordOf(home("a.txt"), home("neu.txt"))}});
    std::filesystem::rename(home("ordner"), disk("ordner"));
    std::filesystem::rename(home("b.txt"), disk("b.txt"));
    model.record({Kind::Move, {recordOf(home("ordner"), disk("ordner")), recordOf(home("b.txt"), disk("b.txt"))}});
    model.redo(); // nothing to do again
    EXPECT_FALSE(model.running.get());

    model.undo();
    ASSERT_TRUE(settled());
    EXPECT_EQ(model.redoTitle.get(), QStringLiteral("Verschieben von 2 Elementen wiederholen"));
    model.undo();
    ASSERT_TRUE(settled());
    EXPECT_EQ(model.redoTitle.get(), QStringLiteral("Umbenennen von „a.txt“ wiederholen"));
    EXPECT_EQ(tree.content("home/a.txt"), "eins");
    model.redo();
    ASSERT_TRUE(settled());
    EXPECT_EQ(model.status.get(), QStringLiteral("Umbenennen von „a.txt“ wiederholt."));
    model.redo(); // across volumes again; the copied-back entries have other inodes
    ASSERT_TRUE(settled());
    EXPECT_EQ(model.errorMessage.get(), std::nullopt);
    EXPECT_EQ(tree.content("home/neu.txt") + tree.content("disk/b.txt") + tree.content("disk/ordner/tief"),
              "einszweidrei");
    EXPECT_FALSE(tree.has("home/a.txt") || tree.has("home/b.txt") || tree.has("home/ordner"));
    EXPECT_EQ(model.redoTitle.get(), std::nullopt);
    EXPECT_EQ(model.title.get(), QStringLiteral("Verschieben von 2 Elementen rückgängig"));

    // Another entry with the same name is not touched.
    model.undo();
    ASSERT_TRUE(settled());
    std::filesystem::rename(home("b.txt"), home("c.txt"));
    tree.file("home/b.txt", "anderes");
    model.redo();
    ASSERT_TRUE(settled());
    EXPECT_EQ(model.errorMessage.get(), QStringLiteral("b.txt: Dort liegt inzwischen etwas anderes."));
    EXPECT_EQ(tree.content("home/b.txt"), "anderes");
    EXPECT_EQ(tree.content("disk/ordner/tief"), "drei");

    model.undo();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(model.redoTitle.get());
    model.record({Kind::NewFile, {recordOf({}, home("c.txt"))}});
    EXPECT_EQ(model.redoTitle.get(), std::nullopt);
    model.redo();
    EXPECT_FALSE(model.running.get());
}

/// A folder whose content went into another, with a folder inside that did the same.
class MergedFolderTest : public UndoTest {
protected:
    MergedFolderTest()
    {
        tree.lines({"home/ordner/innen/x=fünf", "disk/ordner/innen/schon da=sechs"});
        std::filesystem::permissions(home("ordner/innen"), std::filesystem::perms(0710));
        tree.age("home/ordner/innen", Instant(std::chrono::seconds(1'700'000'000)));
        tree.age("home/ordner", Instant(std::chrono::seconds(1'600'000'000)));
        facts = factsNow();
        before = outsideTheTrash();
    }

    std::vector<FolderFacts> factsNow() const
    {
        return {FolderFacts::of(home("ordner")).value_or(FolderFacts()),
                FolderFacts::of(home("ordner/innen")).value_or(FolderFacts())};
    }

    UserAction merge() const
    {
        for (const char *file : {"ordner/tief", "ordner/innen/x"})
            std::filesystem::rename(home(file), disk(file));
        UserAction action{Kind::Move,
                          {recordOf(home("ordner/tief"), disk("ordner/tief")),
                           recordOf(home("ordner/innen/x"), disk("ordner/innen/x"))}};
        for (const char *folder : {"ordner/innen", "ordner"}) {
            action.entries.push_back({home(folder), disk(folder), {}});
            action.entries.back().merged = facts[folder == std::string_view("ordner") ? 0 : 1];
            std::filesystem::remove(home(folder));
        }
        return action;
    }

    std::vector<FolderFacts> facts;
    std::string before;
};

TEST_F(MergedFolderTest, comesBackAsItWasAndGoesAgain)
{
    UserUndo model(services);
    const auto settled = [&] { return waitUntil([&] { return !model.running.get(); }); };
    model.record(merge());
    const std::string merged = outsideTheTrash();
    EXPECT_EQ(model.title.get(), QStringLiteral("Verschieben von 2 Elementen rückgängig"));
    for (int round = 0; round < 2; ++round) {
        model.undo();
        ASSERT_TRUE(settled());
        EXPECT_EQ(model.errorMessage.get(), std::nullopt);
        EXPECT_EQ(outsideTheTrash(), before);
        EXPECT_EQ(factsNow(), facts) << "rights and times, too";
        model.redo();
        ASSERT_TRUE(settled());
        EXPECT_EQ(model.errorMessage.get(), std::nullopt);
        EXPECT_EQ(outsideTheTrash(), merged);
    }
}

TEST_F(MergedFolderTest, takesWhatIsThereByNowAndKeepsWhatWasAdded)
{
    const UserAction action = merge();
    tree.file("home/ordner/neu", "dazu");
    JobControl control;
    const UndoneAction undone = undoAction(action, services, control);
    EXPECT_TRUE(undone.failures.isEmpty());
    EXPECT_EQ(tree.content("home/ordner/innen/x") + tree.content("home/ordner/neu"), "fünfdazu");

    ASSERT_TRUE(undone.again);
    EXPECT_TRUE(undoAction(*undone.again, services, control).failures.isEmpty());
    EXPECT_FALSE(tree.has("home/ordner/innen"));
    EXPECT_TRUE(tree.has("home/ordner/neu")) << "the folder stays with what was added";
}

TEST_F(UndoTest, doesEveryKindAgainAndBack)
{
    tree.folder("home/leer");
    std::filesystem::copy(home("a.txt"), home("kopie.txt"));
    std::filesystem::rename(home("ordner"), disk("ordner"));
    const Result<Location> trashed = realTrash.put(home("b.txt"));
    // A copy and a move, each of which replaced what now lies in the Trash.
    const Result<Location> oldCopy = realTrash.put(disk("alt"));
    tree.file("disk/alt", "Ersatz");
    tree.file("home/ziel", "davor");
    const Result<Location> oldTarget = realTrash.put(home("ziel"));
    tree.file("home/ziel", "bewegt");
    UserAction::Entry copied = recordOf(home("a.txt"), disk("alt"));
    copied.replaced = *oldCopy;
    UserAction::Entry moved = recordOf(home("quelle"), home("ziel"));
    moved.replaced = *oldTarget;
    const std::vector<UserAction> actions{{Kind::NewFolder, {recordOfMade({}, home("leer"))}},
                                          {Kind::Copy, {recordOfMade(home("a.txt"), home("kopie.txt"))}},
                                          {Kind::Move, {recordOf(home("ordner"), disk("ordner"))}},
                                          {Kind::Trash, {recordOf(home("b.txt"), *trashed)}},
                                          {Kind::Copy, {copied}},
                                          {Kind::Move, {moved}}};
    const std::vector<QString> names{
        QStringLiteral("Anlegen von „leer“"),       QStringLiteral("Kopieren von „a.txt“"),
        QStringLiteral("Verschieben von „ordner“"), QStringLiteral("Legen von „b.txt“ in den Papierkorb"),
        QStringLiteral("Kopieren von „a.txt“"),     QStringLiteral("Verschieben von „quelle“")};
    for (std::size_t i = 0; i < actions.size(); ++i) {
        SCOPED_TRACE(i);
        UserUndo model(services);
        const auto settled = [&] { return waitUntil([&] { return !model.running.get(); }); };
        const std::string done = outsideTheTrash();
        model.record(actions[i]);
        std::string undone;
        for (int turn = 0; turn < 2; ++turn) {
            model.undo();
            ASSERT_TRUE(settled());
            EXPECT_EQ(model.errorMessage.get(), std::nullopt);
            EXPECT_EQ(model.status.get(), names[i] + QStringLiteral(" rückgängig gemacht."));
            undone = turn == 0 ? outsideTheTrash() : undone;
            EXPECT_EQ(outsideTheTrash(), undone);
            EXPECT_NE(undone, done);
            EXPECT_EQ(model.redoTitle.get(), names[i] + QStringLiteral(" wiederholen"));
            model.redo();
            ASSERT_TRUE(settled());
            EXPECT_EQ(model.errorMessage.get(), std::nullopt);
            EXPECT_EQ(outsideTheTrash(), done) << "turn " << turn;
            EXPECT_EQ(model.title.get(), names[i] + QStringLiteral(" rückgängig"));
        }
    }
}

TEST_F(UndoTest, doesNotReplaceAgainWhatHasChanged)
{
    const Result<Location> old = realTrash.put(home("b.txt"));
    std::filesystem::rename(home("a.txt"), home("b.txt"));
    UserAction::Entry moved = recordOf(home("a.txt"), home("b.txt"));
    moved.replaced = *old;
    JobControl control;
    const UndoneAction undone = undoAction({Kind::Move, {moved}}, services, control);
    ASSERT_TRUE(undone.again);
    tree.file("home/b.txt", "inzwischen bearbeitet");
    const std::string before = snapshot();
    const UndoneAction redone = undoAction(*undone.again, services, control);
    EXPECT_TRUE(redone.undone.empty());
    EXPECT_EQ(redone.failures.size(), 1);
    EXPECT_EQ(snapshot(), before);
}

TEST_F(UndoTest, aSwapIsDoneAgainAsAWhole)
{
    UserUndo model(services);
    const auto settled = [&] { return waitUntil([&] { return !model.running.get(); }); };
    std::filesystem::rename(home("a.txt"), home("x"));
    std::filesystem::rename(home("b.txt"), home("a.txt"));
    std::filesystem::rename(home("x"), home("b.txt"));
    model.record({Kind::BatchRename, {recordOf(home("a.txt"), home("b.txt")), recordOf(home("b.txt"), home("a.txt"))}});
    const std::string done = snapshot();
    for (int round = 0; round < 2; ++round) {
        model.undo();
        ASSERT_TRUE(settled());
        EXPECT_EQ(tree.content("home/a.txt"), "eins");
        model.redo();
        ASSERT_TRUE(settled());
        EXPECT_EQ(snapshot(), done);
    }
}

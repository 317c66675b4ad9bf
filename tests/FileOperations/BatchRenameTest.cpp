#include "FileOperations/BatchRename.h"
#include "Disk/SystemTrash.h"
#include "FileOperations/RenameLog.h"
#include "FileOperations/SingleRename.h"
#include "Support/FakeDecoder.h"
#include "Support/Faults.h"
#include "Support/FuseMount.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/Clock.h"
#include "System/ReadWhole.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A folder with a swap, a chain, a case-only rename and an invalid UTF-8 name.
class BatchRenameTest : public testing::Test {
protected:
    BatchRenameTest()
    {
        tree.lines({"f/a.jpg=eins", "f/b.jpg=zwei", "f/c=drei", "f/d/inhalt=vier", "f/Gross.txt=fünf", "f/\xFFx=sechs",
                    "f/anderes=sieben"});
        before = snapshotOf(folder);
        for (const auto &[from, to] : std::vector<std::pair<const char *, const char *>>{{"a.jpg", "b.jpg"},
                                                                                         {"b.jpg", "a.jpg"},
                                                                                         {"c", "d"},
                                                                                         {"d", "e"},
                                                                                         {"Gross.txt", "gross.txt"},
                                                                                         {"\xFFx", "\xFFy"}})
            pairs.push_back({folder / from, folder / to, *EntryMark::of(folder / from)});
        JobControl control;
        DiskFileActions real;
        EXPECT_FALSE(renameBatch(pairs, real, logs, control).failure);
        after = snapshotOf(folder);
        const std::vector<RenamePair> forth = pairs;
        for (RenamePair &pair : pairs)
            std::swap(pair.from, pair.to);
        EXPECT_FALSE(renameBatch(pairs, real, logs, control).failure);
        pairs = forth;
        EXPECT_EQ(snapshotOf(folder), before);
    }

    BatchRenameOutcome rename(JobControl &control)
    {
        FaultyFileActions files(faults, volumes);
        files.reserving = onStick;
        return renameBatch(pairs, files, logs, control);
    }
    /// Renames in a process that is killed at point `n`; whether it completed before.
    bool killAt(int n)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            faults = FaultPlan();
            faults.killAt = n;
            JobControl control;
            rename(control);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status);
    }
    /// Restores interrupted batches, killed at point `n` (-1: never); returns the lines.
    QStringList restore(int n = -1)
    {
        if (n >= 0 && ::fork() == 0) {
            faults = FaultPlan();
            faults.killAt = n;
            (void)restore();
            ::_exit(0);
        } else if (n >= 0) {
            ::wait(nullptr);
            return {};
        }
        FaultyFileActions files(faults, volumes);
        files.reserving = onStick;
        QStringList lines;
        for (const CutShortRename &batch : cutShort())
            lines += linesOf(restoreCutShort(batch, files));
        return lines;
    }
    /// Gives every entry another inode and marks the log as without lasting inodes, as on an exFAT stick.
    void forgetInodes() const
    {
        std::vector<Location> entries;
        for (const auto &entry : std::filesystem::directory_iterator(folder))
            entries.push_back(entry.path());
        for (const Location &entry : entries) {
            const Location fresh = tree.path("frisch");
            const auto time = std::filesystem::last_write_time(entry);
            if (std::filesystem::is_directory(entry)) {
                std::filesystem::create_directory(fresh);
                std::filesystem::rename(entry / "inhalt", fresh / "inhalt");
            } else {
                std::filesystem::copy_file(entry, fresh);
            }
            std::filesystem::last_write_time(fresh, time);
            std::filesystem::remove_all(entry);
            std::filesystem::rename(fresh, entry);
        }
        for (const auto &log : std::filesystem::directory_iterator(logs)) {
            QByteArray text = *readWhole(log.path());
            text.replace(R"("lasting":true)", R"("lasting":false)");
            std::ofstream(log.path()) << text.toStdString();
        }
    }
    std::vector<CutShortRename> cutShort(std::chrono::hours later = {}) const
    {
        return cutShortRenames(logs, folder, SystemClock().now() + later);
    }
    bool hasLogs() const { return std::filesystem::exists(logs) && !std::filesystem::is_empty(logs); }

    TempTree tree;
    const Location folder = tree.path("f");
    const Location logs = tree.path("logs");
    SystemVolumes volumes;
    FaultPlan faults;
    bool onStick = false; ///< neither exclusive rename nor lasting inodes
    std::vector<RenamePair> pairs;
    std::string before;
    std::string after;
};

} // namespace

TEST_F(BatchRenameTest, swapsAndChainsInOneGo)
{
    EXPECT_EQ(tree.content("f/a.jpg"), "eins");
    JobControl control;
    const BatchRenameOutcome outcome = rename(control);
    ASSERT_FALSE(outcome.failure);
    EXPECT_EQ(outcome.done.size(), 6U);
    EXPECT_EQ(control.done(), control.total());
    EXPECT_EQ(tree.content("f/b.jpg"), "eins");
    EXPECT_EQ(tree.content("f/a.jpg"), "zwei");
    EXPECT_EQ(tree.content("f/e/inhalt"), "vier");
    EXPECT_FALSE(hasLogs());
    EXPECT_TRUE(cutShort(std::chrono::hours(2)).empty());
}

TEST_F(BatchRenameTest, putsEverythingBackWhicheverMoveFails)
{
    int failures = 0;
    for (int n = 0;; ++n) {
        faults = FaultPlan();
        faults.failAt = n;
        JobControl control;
        const BatchRenameOutcome outcome = rename(control);
        if (!outcome.failure)
            break;
        ++failures;
        EXPECT_TRUE(outcome.done.empty());
        EXPECT_TRUE(outcome.notPutBack.empty());
        EXPECT_EQ(snapshotOf(folder), before) << n;
        EXPECT_FALSE(hasLogs());
    }
    EXPECT_EQ(failures, 12);
    EXPECT_EQ(snapshotOf(folder), after);
}

TEST_F(BatchRenameTest, restoresAfterAKillAtEveryStep)
{
    int kills = 0;
    for (int n = 0;; ++n) {
        const bool survived = killAt(n);
        const std::vector<CutShortRename> found = cutShort();
        DiskFileActions files;
        for (const CutShortRename &batch : found) {
            EXPECT_FALSE(batch.log.empty());
            EXPECT_EQ(linesOf(restoreCutShort(batch, files)), QStringList());
        }
        EXPECT_FALSE(hasLogs()) << n;
        if (survived)
            break;
        ++kills;
        // Only a kill after the last rename leaves nothing to restore.
        EXPECT_EQ(snapshotOf(folder), n == 23 ? after : before) << n;
        EXPECT_EQ(found.size(), n == 0 || n == 23 ? 0U : 1U) << n;
    }
    EXPECT_EQ(kills, 24);
    EXPECT_EQ(snapshotOf(folder), after);
}

TEST_F(BatchRenameTest, restoresUnderAnotherNameWhatSomebodyElseHasTaken)
{
    killAt(3);
    tree.file("f/a.jpg", "neu");
    tree.file("f/b.jpg", "auch neu");
    DiskFileActions files;
    for (const CutShortRename &batch : cutShort()) {
        EXPECT_EQ(linesOf(restoreCutShort(batch, files)),
                  QStringList({QStringLiteral("b.jpg: Heißt jetzt „b (2).jpg“, denn der alte Name ist vergeben."),
                               QStringLiteral("a.jpg: Heißt jetzt „a (2).jpg“, denn der alte Name ist vergeben.")}));
    }
    EXPECT_EQ(tree.content("f/a.jpg"), "neu");
    EXPECT_EQ(tree.content("f/b.jpg"), "auch neu");
    EXPECT_EQ(tree.content("f/a (2).jpg"), "eins");
    EXPECT_EQ(tree.content("f/b (2).jpg"), "zwei");
}

TEST_F(BatchRenameTest, restoresOnVolumesThatReserveNamesAndForgetInodes)
{
    onStick = true;
    tree.file("f/leer", "");
    tree.age("f/leer", SystemClock().now() - std::chrono::hours(1));
    pairs.insert(pairs.begin() + 2, {folder / "leer", folder / "c", *EntryMark::of(folder / "leer")});
    pairs.push_back({folder / "anderes", folder / "leer", *EntryMark::of(folder / "anderes")});
    before = snapshotOf(folder);
    int kills = 0;
    for (int n = 0; n < 100 && !killAt(n); ++n) {
        ++kills;
        forgetInodes();
        EXPECT_EQ(restore(), QStringList()) << n;
        EXPECT_FALSE(hasLogs()) << n;
        if (snapshotOf(folder) != before) {
            // Only a kill after the last rename leaves the new names.
            EXPECT_EQ(tree.content("f/leer"), "sieben") << n;
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 8) << n;
            std::filesystem::rename(folder / "leer", folder / "anderes");
            for (std::size_t i = pairs.size() - 1; i-- > 0;)
                std::filesystem::rename(pairs[i].to, tree.path(std::to_string(i)));
            for (std::size_t i = pairs.size() - 1; i-- > 0;)
                std::filesystem::rename(tree.path(std::to_string(i)), pairs[i].from);
        }
        ASSERT_EQ(snapshotOf(folder), before) << n;
        for (RenamePair &pair : pairs)
            pair.mark = *EntryMark::of(pair.from);
    }
    EXPECT_EQ(kills, 2 * 8 * 4);
}

TEST_F(BatchRenameTest, aSingleRenameIsLoggedWhereItsNameIsKeptFree)
{
    const Location from = folder / "c";
    const Location to = folder / "neu";
    const auto renamed = [&](int n) {
        faults = FaultPlan();
        faults.killAt = n;
        FaultyFileActions files(faults, volumes);
        files.reserving = onStick;
        return renameSingle(from, to, files, logs);
    };
    onStick = true;
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 20);
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(renamed(n) ? 0 : 1);
        int status = 0;
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status))
            break;
        forgetInodes();
        EXPECT_EQ(restore(), QStringList());
        EXPECT_FALSE(hasLogs());
        if (!entryExists(from)) // killed after the last rename
            std::filesystem::rename(to, from);
        ASSERT_EQ(snapshotOf(folder), before);
    }
    EXPECT_EQ(tree.content("f/neu"), "drei");
    std::filesystem::rename(to, from);
    tree.file("f/neu", "ein anderes");
    const Result<void> onto = renamed(-1);
    EXPECT_TRUE(!onto && onto.error().is(std::errc::file_exists));
    EXPECT_EQ(tree.content("f/c"), "drei");
    // On other volumes no log is written.
    std::filesystem::remove_all(to);
    std::filesystem::remove_all(logs);
    onStick = false;
    EXPECT_TRUE(renamed(-1));
    EXPECT_FALSE(std::filesystem::exists(logs));
}

TEST_F(BatchRenameTest, aSingleRenameMayChangeNothingButTheCaseOnACard)
{
    const Location card = tree.folder("karte");
    const FuseMount mount(card);
    if (!mount)
        GTEST_SKIP() << "no such volume here";
    tree.lines({"karte/brief.txt=eins", "karte/fotos/a.jpg=zwei"});
    DiskFileActions disk;
    for (const auto &[from, to] : {std::pair{"brief.txt", "Brief.txt"}, std::pair{"fotos", "Fotos"}}) {
        const Result<void> renamed = renameSingle(card / from, card / to, disk, logs);
        EXPECT_TRUE(renamed) << from << (renamed ? "" : renamed.error().message.toStdString());
    }
    std::set<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(card))
        names.insert(entry.path().filename());
    EXPECT_EQ(names, (std::set<std::string>{"Brief.txt", "Fotos"}));
    EXPECT_EQ(tree.content("karte/Brief.txt"), "eins");
    EXPECT_EQ(tree.content("karte/Fotos/a.jpg"), "zwei");
    EXPECT_FALSE(hasLogs());
}

TEST_F(BatchRenameTest, aRestoreMayBeCutShortItself)
{
    onStick = true;
    for (const int at : {13, 45}) {
        for (int n = 0;; n += 3) {
            SCOPED_TRACE(testing::Message() << at << ", restored until " << n);
            for (RenamePair &pair : pairs)
                pair.mark = *EntryMark::of(pair.from);
            ASSERT_FALSE(killAt(at));
            forgetInodes();
            restore(n);
            const bool whole = !hasLogs();
            forgetInodes();
            EXPECT_EQ(restore(), QStringList());
            ASSERT_EQ(snapshotOf(folder), before);
            EXPECT_FALSE(hasLogs());
            if (whole)
                break;
        }
    }
}

TEST_F(BatchRenameTest, leavesWhatNobodyCanTellAndKeepsItsLog)
{
    onStick = true;
    ASSERT_FALSE(killAt(40)); // four of six have their new names
    forgetInodes();
    tree.file("f/a.jpg", "ein ganz anderer Inhalt"); // was "b.jpg"
    EXPECT_EQ(restore(),
              QStringList({QStringLiteral("a.jpg: Ob das „b.jpg“ ist, ließ sich nicht sicher feststellen; der Name "
                                          "bleibt."),
                           QStringLiteral("a.jpg: Heißt jetzt „b.jpg“, denn der alte Name ist vergeben.")}));
    EXPECT_EQ(tree.content("f/a.jpg"), "ein ganz anderer Inhalt");
    EXPECT_EQ(tree.content("f/b.jpg"), "eins");
    EXPECT_EQ(tree.content("f/c"), "drei");
    EXPECT_EQ(tree.content("f/d/inhalt"), "vier");
    EXPECT_TRUE(hasLogs());
    EXPECT_TRUE(cutShort(std::chrono::hours(2)).empty()); // nothing to restore, and not offered again
    EXPECT_TRUE(hasLogs());
}

TEST_F(BatchRenameTest, leavesLivingBatchesAndYoungOrphansAlone)
{
    const Location waiting = folder / temporaryName("c", folder);
    std::filesystem::rename(folder / "c", waiting);
    {
        const Result<RenameLog> living = RenameLog::create(logs, {{folder / "c", folder / "x", waiting}});
        ASSERT_TRUE(living);
        EXPECT_TRUE(cutShort(std::chrono::hours(2)).empty());
    }
    EXPECT_EQ(cutShort().size(), 1U);
    // Without a log the temporary name contains the old one, but another process may be using it.
    std::filesystem::remove_all(logs);
    EXPECT_TRUE(cutShort().empty());
    const std::vector<CutShortRename> orphans = cutShort(std::chrono::hours(2));
    ASSERT_EQ(orphans.size(), 1U);
    DiskFileActions files;
    EXPECT_EQ(linesOf(restoreCutShort(orphans.front(), files)), QStringList());
    EXPECT_EQ(snapshotOf(folder), before);
    // The log of a volume that is not mounted is kept.
    std::filesystem::create_directories(logs);
    JobControl control;
    {
        const Result<RenameLog> away = RenameLog::create(logs, {{"/nicht da/c", "/nicht da/x", "/nicht da/t"}});
    }
    EXPECT_TRUE(cutShort().empty());
    EXPECT_TRUE(hasLogs());
}

TEST_F(BatchRenameTest, changesNothingWhenAnEntryIsNoLongerTheOnePlanned)
{
    tree.file("f/neu", "x");
    std::filesystem::rename(folder / "neu", folder / "c");
    const std::string now = snapshotOf(folder);
    JobControl control;
    EXPECT_EQ(rename(control).failure->message, QStringLiteral("„c“ hat sich inzwischen geändert."));
    JobControl cancelled;
    pairs.erase(pairs.begin() + 2);
    cancelled.cancel();
    EXPECT_TRUE(rename(cancelled).failure->isCancelled());
    EXPECT_EQ(snapshotOf(folder), now);
    EXPECT_FALSE(hasLogs());
}

TEST_F(BatchRenameTest, theSheetPreviewsRenamesAndTakesBack)
{
    FakeDecoder decoder;
    decoder.answers[decoderWords::facts] = QByteArray(R"({"taken":"2020-05-04T10:00:00"})");
    FaultyFileActions files(faults, volumes);
    SystemTrash trash(tree.path("trash"), volumes);
    UserUndo undo({files, trash, logs});
    BatchRename sheet({files, decoder, logs, undo}, {folder / "b.jpg", folder / "c"});
    ASSERT_TRUE(waitUntil([&] { return !sheet.reading.get(); }));
    EXPECT_TRUE(decoder.asked().empty()); // dates are read only when needed
    EXPECT_EQ(sheet.preview.get().rows[0].name, "01.jpg");
    EXPECT_TRUE(sheet.canStart());

    BatchRenameFields fields;
    fields.mode = BatchRenameFields::Mode::Date;
    sheet.setFields(fields);
    EXPECT_FALSE(sheet.canStart());
    ASSERT_TRUE(waitUntil([&] { return !sheet.reading.get(); }));
    EXPECT_EQ(sheet.preview.get().rows[0].name, "2020-05-04 b.jpg");
    EXPECT_TRUE(sheet.preview.get().rows[1].name.ends_with(" c"));
    EXPECT_EQ(sheet.preview.get().rows[1].name.size(), std::string("2020-05-04 c").size());

    faults.failAt = 3;
    sheet.start();
    ASSERT_TRUE(waitUntil([&] { return !sheet.running.get(); }));
    EXPECT_EQ(sheet.error.get(),
              QStringLiteral("Umbenennen abgebrochen: Der Datenträger meldet einen Lese- oder Schreibfehler."));
    EXPECT_EQ(snapshotOf(folder), before);

    sheet.start();
    ASSERT_TRUE(waitUntil([&] { return !sheet.running.get(); }));
    EXPECT_EQ(sheet.status.get(), QStringLiteral("2 umbenannt."));
    EXPECT_EQ(sheet.error.get(), std::nullopt);
    EXPECT_EQ(tree.content("f/2020-05-04 b.jpg"), "zwei");
    EXPECT_EQ(undo.title.get(), QStringLiteral("Umbenennen von 2 Elementen rückgängig"));
    EXPECT_FALSE(sheet.canStart());

    sheet.undo();
    ASSERT_TRUE(waitUntil([&] { return !sheet.running.get(); }));
    EXPECT_EQ(snapshotOf(folder), before);
    EXPECT_TRUE(undo.actions.get().empty()); // cannot be undone a second time
}

#include "Disk/CopyEntry.h"

#include "Disk/CopyEntryData.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/Digest.h"
#include "Disk/FileAttributes.h"
#include "Disk/OpenContent.h"
#include "Support/FailingCalls.h"
#include "Support/PrivateMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brellin {

namespace {

using test::PrivateMount;
using test::snapshotOf;
using test::TempTree;

std::string messageOf(const auto &result)
{
    return result ? std::string() : result.error().message.toStdString();
}

/// Drops root's privileges, after giving the tree to an ordinary user.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const TempTree &tree)
    {
        if (::geteuid() != 0)
            return;
        const uid_t nobody = 65534;
        EXPECT_EQ(::lchown(tree.root().c_str(), nobody, nobody), 0);
        for (const auto &entry : std::filesystem::recursive_directory_iterator(tree.root()))
            EXPECT_EQ(::lchown(entry.path().c_str(), nobody, nobody), 0);
        EXPECT_EQ(::setegid(nobody), 0);
        EXPECT_EQ(::seteuid(nobody), 0);
        m_changed = true;
    }
    ~OrdinaryUser()
    {
        if (m_changed) {
            EXPECT_EQ(::seteuid(0), 0);
            EXPECT_EQ(::setegid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    bool m_changed = false;
};

void fillTree(const TempTree &tree)
{
    tree.file("a/gross", std::string(1'500'000, 'x'));
    tree.lines({"a/eins=1", "a/leer/", "a/tief/zwei=2", "a/tief/drei=3", "a/weg->nirgends", "a/zu/vier=4"});
    ::chmod(tree.path("a/zu").c_str(), 0500);
    ::link(tree.path("a/eins").c_str(), tree.path("a/tief/fest").c_str());
    tree.folder("ziel");
}

/// Calls `act` at the n-th progress report.
CopyOptions actingAt(int n, std::function<void()> act)
{
    CopyOptions options;
    options.interval = std::chrono::milliseconds(0);
    auto counter = std::make_shared<int>(0);
    options.progress = [n, counter, act = std::move(act)](const CopyProgress &) {
        if ((*counter)++ == n)
            act();
    };
    return options;
}

TEST(CopyEntryFailureTest, aCancelAtAnyMomentLeavesNothing)
{
    TempTree tree;
    fillTree(tree);
    const OrdinaryUser user(tree);
    const std::string before = tree.snapshot();
    int n = 0;
    for (;; ++n) {
        JobControl control;
        CopyOptions options = actingAt(n, [&] { control.cancel(); });
        options.control = &control;
        const auto report = copyEntry(tree.path("a"), tree.path("ziel/b"), options);
        if (report)
            break;
        EXPECT_TRUE(report.error().isCancelled()) << messageOf(report);
        ASSERT_EQ(tree.snapshot(), before) << "cancelled at report " << n;
    }
    EXPECT_GT(n, 10);
    EXPECT_EQ(snapshotOf(tree.path("ziel/b")), snapshotOf(tree.path("a")));
}

TEST(CopyEntryFailureTest, whatOthersPutIntoAHalfCopyStays)
{
    const TempTree tree;
    fillTree(tree);
    for (int n = 0;; ++n) {
        JobControl control;
        CopyOptions options = actingAt(n, [&] {
            control.cancel();
            if (tree.has("ziel/b")) {
                tree.lines({"ziel/b/fremd=bleibt", "ziel/b/fremder ordner/x=bleibt"});
                std::filesystem::remove(tree.path("ziel/b/eins"));
                tree.file("ziel/b/eins", "fremd unter gleichem Namen");
            }
        });
        options.control = &control;
        const auto report = copyEntry(tree.path("a"), tree.path("ziel/b"), options);
        if (report)
            break;
        if (tree.has("ziel/b")) {
            EXPECT_EQ(tree.content("ziel/b/fremd"), "bleibt");
            EXPECT_EQ(tree.content("ziel/b/fremder ordner/x"), "bleibt");
            EXPECT_FALSE(tree.has("ziel/b/gross"));
            EXPECT_FALSE(tree.has("ziel/b/tief"));
            ASSERT_TRUE(removeOwnCopy(tree.path("ziel/b")));
        }
    }
}

/// A tree large enough for a second thread, with hard links across folders and two large files.
class ManyFilesTest : public testing::Test {
protected:
    ManyFilesTest()
    {
        tree.file("a/eins", "1");
        for (int folder = 0; folder < 8; ++folder) {
            for (int file = 0; file < 16; ++file)
                tree.file(inFolder(folder, file), std::string(static_cast<std::size_t>(file) * 100, 'x'));
            ::link(tree.path("a/eins").c_str(), tree.path(inFolder(folder, 99)).c_str());
        }
        tree.lines({"a/ordner3/tief/zwei=2", "a/weg->nirgends"});
        tree.file("a/ordner5/gross", std::string(5 << 20, 'g'));
        tree.file("a/ordner6/gross", std::string(5 << 20, 'h'));
        ::chmod(tree.path("a/ordner4").c_str(), 0711);
        tree.folder("ziel");
    }
    static std::string inFolder(int folder, int file)
    {
        return "a/ordner" + std::to_string(folder) + "/" + std::to_string(file);
    }

    TempTree tree;
};

TEST_F(ManyFilesTest, arriveAsTheyWereAndAreTakenDownOneByOne)
{
    const std::string before = snapshotOf(tree.path("a"));
    CopiedEntries copied;
    CopyOptions options;
    options.copied = &copied;
    std::vector<CopyProgress> seen;
    options.interval = std::chrono::milliseconds(0);
    options.progress = [&, thread = std::this_thread::get_id()](const CopyProgress &progress) {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        seen.push_back(progress);
    };
    const auto report = copyEntry(tree.path("a"), tree.path("ziel/b"), options);
    ASSERT_TRUE(report) << messageOf(report);
    EXPECT_EQ(snapshotOf(tree.path("ziel/b")), before);
    EXPECT_EQ(statusOf({AT_FDCWD, tree.path("ziel/b/eins").c_str()})->st_nlink, 9U);
    EXPECT_EQ(report->files, seen.back().files);
    EXPECT_EQ(report->files, 8 * 17 + 5);
    EXPECT_TRUE(std::ranges::is_sorted(seen, {}, &CopyProgress::bytes));
    const auto kept = removeCopied(tree.path("a"), copied, tree.path("ziel/b"));
    ASSERT_TRUE(kept) << messageOf(kept);
    EXPECT_TRUE(kept->empty());
    EXPECT_FALSE(tree.has("a"));
}

TEST_F(ManyFilesTest, leaveNothingWhenOneFailsOrTheyAreCancelled)
{
    const std::string before = tree.snapshot();
    for (const int n : {0, 20, 70, 130}) {
        JobControl control;
        CopyOptions options = actingAt(n, [&] { control.cancel(); });
        options.control = &control;
        const auto report = copyEntry(tree.path("a"), tree.path("ziel/b"), options);
        EXPECT_TRUE(report || report.error().isCancelled()) << messageOf(report);
        EXPECT_TRUE(removeOwnCopy(report ? tree.path("ziel/b") : tree.path("ziel/fehlt")));
        ASSERT_EQ(tree.snapshot(), before) << "cancelled at report " << n;
    }
}

TEST_F(ManyFilesTest, standStillWhileAReportBlocks)
{
    for (int i = 0; i < 500; ++i)
        tree.file("a/viele/" + std::to_string(i), "x");
    const auto copied = [&] {
        const std::filesystem::recursive_directory_iterator entries(tree.path("ziel"));
        return std::distance(begin(entries), end(entries));
    };
    std::ptrdiff_t before = 0;
    std::ptrdiff_t after = -1;
    CopyOptions options;
    options.interval = std::chrono::milliseconds(0);
    options.progress = [&](const CopyProgress &) {
        if (after >= 0 || !tree.has("ziel/b/viele"))
            return;
        before = copied();
        do {
            after = copied();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        } while (after != copied());
    };
    ASSERT_TRUE(copyEntry(tree.path("a"), tree.path("ziel/b"), options));
    EXPECT_LE(after, before + 1) << "each thread may finish its file";
    EXPECT_EQ(snapshotOf(tree.path("ziel/b")), snapshotOf(tree.path("a")));
}

TEST_F(ManyFilesTest, aFailureOfOneIsToldByItsPath)
{
    ::chmod(tree.path("a/ordner4").c_str(), 0500);
    const OrdinaryUser user(tree);
    const std::string before = tree.snapshot();
    for (const int folder : {0, 7}) {
        const Location closed = tree.path(inFolder(folder, 13));
        ::chmod(closed.c_str(), 0);
        const auto report = copyEntry(tree.path("a"), tree.path("ziel/b"));
        ::chmod(closed.c_str(), 0644);
        ASSERT_FALSE(report);
        EXPECT_EQ(messageOf(report).find("„" + inFolder(folder, 13).substr(2) + "“: "), 0U) << messageOf(report);
        ASSERT_EQ(tree.snapshot(), before);
    }
}

/// A large file that is modified while it is copied, within its volume and to another.
class ChangingSourceTest : public testing::TestWithParam<bool> {
protected:
    ChangingSourceTest() : target(GetParam() ? test::otherVolume() : std::filesystem::temp_directory_path())
    {
        tree.file("a", std::string(size, 'x'));
        std::this_thread::sleep_for(std::chrono::milliseconds(40)); // until its times are settled
    }

    /// Content of the copy, with `change` at the progress reports `at`; "" if it failed.
    std::string copiedWhile(std::set<int> at, const std::function<void()> &change)
    {
        int reports = 0;
        CopyOptions options = actingAt(-1, {});
        options.progress = [&](const CopyProgress &) {
            if (at.contains(reports++))
                change();
        };
        const auto copied = copyEntry(tree.path("a"), target.path("b"), options);
        failed = messageOf(copied);
        std::string content = copied ? target.content("b") : std::string();
        EXPECT_EQ(target.has("b"), copied.has_value());
        (void)removeOwnCopy(target.path("b"));
        return content;
    }
    /// Overwrites the beginning with other bytes.
    void rewrite() const { std::fstream(tree.path("a"), std::ios::in | std::ios::out) << std::string(size, ++letter); }

    static constexpr std::size_t size = 5 << 20;
    TempTree tree;
    TempTree target;
    std::string failed;
    mutable char letter = 'A';
};

INSTANTIATE_TEST_SUITE_P(Volumes, ChangingSourceTest, testing::Bool());

TEST_P(ChangingSourceTest, givesACopyOfOneMomentOrNone)
{
    EXPECT_EQ(copiedWhile({1}, [&] { rewrite(); }), std::string(size, 'B'));
    EXPECT_EQ(copiedWhile({1}, [&] { std::filesystem::resize_file(tree.path("a"), 1000); }), std::string(1000, 'B'));
    tree.file("a", std::string(size, 'x'));
    EXPECT_EQ(copiedWhile({1},
                          [&] {
                              const auto time = std::filesystem::last_write_time(tree.path("a"));
                              rewrite();
                              std::filesystem::last_write_time(tree.path("a"), time);
                          }),
              std::string(size, 'C'));
    std::set<int> always;
    for (int n = 1; n < 1000; ++n)
        always.insert(n);
    EXPECT_EQ(copiedWhile(always, [&] { rewrite(); }), "");
    EXPECT_EQ(failed, "Die Datei wird gerade geändert; beim Kopieren blieb sie nie gleich.");
}

TEST_P(ChangingSourceTest, takesAFileThatOnlyGrewAsItWas)
{
    std::set<int> always;
    for (int n = 1; n < 1000; ++n)
        always.insert(n);
    const auto grow = [&] { std::ofstream(tree.path("a"), std::ios::app) << "noch eine Zeile\n"; };
    EXPECT_EQ(copiedWhile(always, grow), std::string(size, 'x'));
    // Other bytes at the beginning make it another file.
    const std::string now = tree.content("a");
    EXPECT_EQ(copiedWhile({1},
                          [&] {
                              grow();
                              rewrite();
                          })
                  .substr(0, size),
              std::string(size, 'B'));
}

TEST_P(ChangingSourceTest, isNotDisturbedByNewRights)
{
    EXPECT_EQ(copiedWhile({1}, [&] { ::chmod(tree.path("a").c_str(), 0600); }), std::string(size, 'x'));
}

/// Copy and digest report errors of single calls.
TEST(CopyEntryFailureTest, aReadErrorIsNoEndOfAFile)
{
    const TempTree tree;
    tree.file("a", std::string(300'000, 'x'));
    for (const int call : {SYS_pread64, SYS_read}) {
        bool failed = true;
        for (int n = 0; failed; ++n) {
            ASSERT_LT(n, 100);
            failed = false;
            const auto count = [&](int number) {
                failed = failed || number == n;
                return number == n ? EIO : 0;
            };
            bool copied = false;
            Result<QByteArray> digest;
            Result<QByteArray> digestOfOpen;
            const auto act = [&] {
                copied = copyEntry(tree.path("a"), tree.path("b" + std::to_string(n))).has_value();
                digest = sha256(tree.path("a"));
                const auto seen = FileState::of(*readAttributes(tree.path("a")));
                const auto open = OpenContent::open(tree.path("a").native(), seen);
                digestOfOpen = open ? open->digest(nullptr) : failure(open.error());
            };
            if (!test::runWithFailingCalls(call, count, act))
                GTEST_SKIP() << "the system cannot make calls fail here";
            EXPECT_EQ(copied && digest && digestOfOpen, !failed) << call << ", number " << n;
            EXPECT_EQ(tree.has("b" + std::to_string(n)), copied);
            (void)removeOwnCopy(tree.path("b" + std::to_string(n)));
        }
    }
}

TEST(CopyEntryFailureTest, fillsHolesWhereTheTargetHasNone)
{
    const TempTree tree;
    tree.file("a", "Anfang");
    std::filesystem::resize_file(tree.path("a"), 3 << 20);
    std::ofstream(tree.path("a"), std::ios::app) << "Ende";
    std::filesystem::resize_file(tree.path("a"), 5 << 20);
    for (const int error : {EPERM, EINVAL, EOPNOTSUPP}) {
        Result<CopyReport> report;
        const auto act = [&] { report = copyEntry(tree.path("a"), tree.path("b")); };
        if (!test::runWithFailingCalls(SYS_ftruncate, [&](int) { return error; }, act))
            GTEST_SKIP() << "the system cannot make calls fail here";
        ASSERT_TRUE(report) << messageOf(report);
        EXPECT_EQ(tree.content("b"), tree.content("a"));
        EXPECT_EQ(report->bytes, 5 << 20);
        (void)removeOwnCopy(tree.path("b"));
    }
}

/// To another volume, so that nothing is cloned.
TEST(CopyEntryFailureTest, whatGotShorterIsNoCopyOfWhatItWas)
{
    const Location other = test::otherVolume();
    if (other.empty())
        GTEST_SKIP() << "no second volume on this machine";
    const TempTree tree;
    const TempTree target(other);
    tree.file("mit Löchern", "Anfang");
    std::filesystem::resize_file(tree.path("mit Löchern"), 1 << 20);
    tree.file("klein", std::string(50'000, 'x'));
    tree.file("gross", std::string(3 << 20, 'x'));
    for (const std::string name : {"mit Löchern", "klein", "gross"}) {
        const Descriptor source = *openForReading({AT_FDCWD, tree.path(name).c_str()});
        const struct stat before = *statusOf({AT_FDCWD, tree.path(name).c_str()});
        std::filesystem::resize_file(tree.path(name), before.st_size / 3);
        const Descriptor copy(::open(target.path(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        const CopyOptions options;
        CopyPulse pulse(options, [] { return Location(); });
        EXPECT_FALSE(CopyData(pulse).copy(source.number(), before, copy.number())) << name;
    }
}

TEST(CopyEntryFailureTest, pipesAndDevicesAreNamedAndNeverOpened)
{
    const TempTree tree;
    tree.lines({"a/eins=1", "a/tief/"});
    ASSERT_EQ(::mkfifo(tree.path("a/tief/pipe").c_str(), 0600), 0);
    const std::string before = tree.snapshot();
    const auto inside = copyEntry(tree.path("a"), tree.path("b"));
    ASSERT_FALSE(inside);
    EXPECT_TRUE(messageOf(inside).starts_with("„tief/pipe“: Das ist keine gewöhnliche Datei")) << messageOf(inside);
    EXPECT_TRUE(inside.error().is(std::errc::not_supported));
    EXPECT_FALSE(copyEntry(tree.path("a/tief/pipe"), tree.path("b")));
    EXPECT_FALSE(copyEntry("/dev/null", tree.path("b")));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(CopyEntryFailureTest, whatCannotBeReadFailsByName)
{
    TempTree tree;
    tree.lines({"a/eins=1", "a/tief/geheim=2", "b/zu/x=3"});
    ::chmod(tree.path("a/tief/geheim").c_str(), 0);
    ::chmod(tree.path("b/zu").c_str(), 0);
    const OrdinaryUser user(tree);
    for (const auto &[source, name] : {std::pair("a", "„tief/geheim“"), std::pair("b", "„zu“")}) {
        const auto report = copyEntry(tree.path(source), tree.path("neu"));
        ASSERT_FALSE(report) << source;
        EXPECT_TRUE(report.error().is(std::errc::permission_denied));
        EXPECT_TRUE(messageOf(report).starts_with(name)) << messageOf(report);
        EXPECT_FALSE(tree.has("neu"));
    }
}

TEST(CopyEntryFailureTest, lentRightsDoNotPassToAnotherOwner)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make a file of somebody else's";
    TempTree tree;
    tree.file("programm", "x");
    {
        const OrdinaryUser user(tree);
    }
    ASSERT_EQ(::chown(tree.path("programm").c_str(), 0, 0), 0);
    ASSERT_EQ(::chmod(tree.path("programm").c_str(), 06755), 0);
    ASSERT_TRUE(copyEntry(tree.path("programm"), tree.path("von root")));
    EXPECT_EQ(readAttributes(tree.path("von root"))->mode, 06755U);
    ASSERT_EQ(::seteuid(65534), 0);
    EXPECT_TRUE(copyEntry(tree.path("programm"), tree.path("von anderen")));
    EXPECT_EQ(readAttributes(tree.path("von anderen"))->mode & 07000U, 02000U) << "the group is root's own";
    ASSERT_EQ(::seteuid(0), 0);
}

TEST(CopyEntryFailureTest, aFullDiskLeavesNothing)
{
    const TempTree tree;
    fillTree(tree);
    const PrivateMount small(tree.folder("klein"), "tmpfs", "size=1m");
    if (!small)
        GTEST_SKIP() << "cannot mount a small volume here";
    tree.file("klein/vorher", "bleibt");
    tree.file("ein Stück", std::string(1 << 20, 'x')); // written in one call, only part of which fits
    const std::string before = tree.snapshot();
    for (const std::string source : {"a", "a/gross", "ein Stück"}) {
        const auto report = copyEntry(tree.path(source), tree.path("klein/b"));
        ASSERT_FALSE(report);
        EXPECT_TRUE(report.error().is(std::errc::no_space_on_device)) << messageOf(report);
        EXPECT_EQ(tree.snapshot(), before) << source;
    }
}

TEST(CopyEntryFailureTest, saysOnceWhatTheTargetCannotKeep)
{
    const TempTree tree;
    tree.lines({"a/eins=1", "a/zwei=2"});
    const PrivateMount plain(tree.folder("karg"), "ramfs", "");
    if (!plain)
        GTEST_SKIP() << "cannot mount a volume without extended attributes here";
    for (const std::string name : {"a/eins", "a/zwei"})
        ASSERT_EQ(::setxattr(tree.path(name).c_str(), "user.xdg.tags", "Rot", 3, 0), 0);
    const auto report = copyEntry(tree.path("a"), tree.path("karg/b"));
    ASSERT_TRUE(report) << messageOf(report);
    EXPECT_EQ(report->notKept,
              QStringList{QStringLiteral("Erweiterte Attribute und Markierungen kann das Ziel nicht speichern.")});
    EXPECT_EQ(tree.content("karg/b/zwei"), "2");
}

TEST(CopyEntryFailureTest, aMountInsideDoesNotMakeACopyEndless)
{
    const TempTree tree;
    tree.lines({"a/x=1", "a/schleife/", "ziel/"});
    const PrivateMount any(tree.folder("irgendwo"), "tmpfs", "size=1m");
    if (!any ||
        ::mount(tree.path("a").c_str(), tree.path("a/schleife").c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0)
        GTEST_SKIP() << "cannot mount a folder into itself here";
    EXPECT_FALSE(copyEntry(tree.path("a"), tree.path("ziel/b")));
    EXPECT_EQ(snapshotOf(tree.path("ziel")), "");
    ::umount2(tree.path("a/schleife").c_str(), MNT_DETACH);
    // The copy's own folder, through a mount inside the source.
    ASSERT_EQ(::mount(tree.path("ziel").c_str(), tree.path("a/schleife").c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_FALSE(copyEntry(tree.path("a"), tree.path("ziel/b")));
    EXPECT_EQ(snapshotOf(tree.path("ziel")), "");
    ::umount2(tree.path("a/schleife").c_str(), MNT_DETACH);
}

TEST(RemoveOwnCopyTest, removesClosedFoldersAndFollowsNoLink)
{
    TempTree tree;
    tree.lines({"kopie/zu/tief/x=1", "kopie/leer/", "kopie/zum rest->../rest", "rest/y=2", "link->rest"});
    const OrdinaryUser user(tree);
    ::chmod(tree.path("kopie/zu/tief").c_str(), 0);
    ::chmod(tree.path("kopie/zu").c_str(), 0);
    ::chmod(tree.path("kopie").c_str(), 0500);
    for (const std::string name : {"kopie", "link", "fehlt", "fehlt/auch"}) {
        const auto removed = removeOwnCopy(tree.path(name));
        EXPECT_TRUE(removed) << name << messageOf(removed);
        EXPECT_FALSE(tree.has(name));
    }
    EXPECT_EQ(tree.content("rest/y"), "2");
}

TEST(RemoveOwnCopyTest, stopsAtAMount)
{
    const TempTree tree;
    tree.lines({"kopie/x=1", "kopie/platte/"});
    const PrivateMount disk(tree.path("kopie/platte"), "tmpfs", "size=1m");
    if (!disk)
        GTEST_SKIP() << "cannot mount a volume here";
    tree.file("kopie/platte/wichtig", "bleibt");
    EXPECT_TRUE(removeOwnCopy(tree.path("kopie")).error().is(std::errc::device_or_resource_busy));
    EXPECT_EQ(tree.content("kopie/platte/wichtig"), "bleibt");
    EXPECT_FALSE(removeOwnCopy(tree.path("kopie/platte")));
    EXPECT_EQ(tree.content("kopie/platte/wichtig"), "bleibt");
}

TEST(RemoveTreeTest, knowsOwnEntriesByPathWhereInodesChange)
{
    const TempTree tree;
    tree.lines({"kopie/a=1", "kopie/b/a=2", "kopie/b/c=fremd", "kopie/d/a=fremd"});
    OwnEntries own(OwnEntries::KnownBy::Path);
    const std::uint64_t top = OwnEntries::pathMark(0, "kopie");
    const std::uint64_t b = OwnEntries::pathMark(top, "b");
    for (const std::uint64_t mark : {top, b, OwnEntries::pathMark(top, "a"), OwnEntries::pathMark(b, "a")})
        own.add(mark, 0);
    own.sort();
    const EntryPlace place = *openPlace(tree.path("kopie"));
    EXPECT_TRUE(removeTree(place.at(), &own));
    EXPECT_FALSE(tree.has("kopie/a"));
    EXPECT_FALSE(tree.has("kopie/b/a"));
    EXPECT_EQ(tree.content("kopie/b/c") + tree.content("kopie/d/a"), "fremdfremd");
}

} // namespace

} // namespace brellin

#include "Disk/CopyEntry.h"

#include "Disk/FileAttributes.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brellin {

namespace {

using test::snapshotOf;
using test::TempTree;

std::string messageOf(const auto &result)
{
    return result ? std::string() : result.error().message.toStdString();
}

struct stat statusAt(const Location &location)
{
    struct stat status{};
    EXPECT_EQ(::lstat(location.c_str(), &status), 0) << location;
    return status;
}

bool setAttribute(const Location &entry, const char *name, std::string_view value)
{
    return ::lsetxattr(entry.c_str(), name, value.data(), value.size(), 0) == 0;
}

std::string attribute(const Location &entry, const char *name)
{
    std::string value(65536, '\0');
    const ssize_t size = ::lgetxattr(entry.c_str(), name, value.data(), value.size());
    return size < 0 ? "(none)" : value.substr(0, static_cast<std::size_t>(size));
}

/// An ACL as stored by the system: owner, one more user (1234: read), group, mask, others.
std::string accessList()
{
    struct Entry {
        std::uint16_t tag, rights;
        std::uint32_t id;
    };
    const std::uint32_t version = 2;
    const Entry entries[] = {{1, 6, ~0U}, {2, 4, 1234}, {4, 4, ~0U}, {16, 4, ~0U}, {32, 0, ~0U}};
    std::string bytes(sizeof(version) + sizeof(entries), '\0');
    std::memcpy(bytes.data(), &version, sizeof(version));
    std::memcpy(bytes.data() + sizeof(version), entries, sizeof(entries));
    return bytes;
}

/// Within a volume and across two, which use different ways of copying.
class CopyEntryTest : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (GetParam() && test::otherVolume().empty())
            GTEST_SKIP() << "no second volume on this machine";
    }

    TempTree tree;
    TempTree target{GetParam() ? test::otherVolume() : std::filesystem::temp_directory_path()};
};

INSTANTIATE_TEST_SUITE_P(Volumes, CopyEntryTest, ::testing::Values(false, true),
                         [](const auto &way) { return way.param ? "across" : "within"; });

TEST_P(CopyEntryTest, keepsNamesKindsContentModesTimesAndAttributes)
{
    tree.lines({"a/eins.txt=inhalt", "a/leer=", "a/ü/zwei\nZeilen=x", "a/-rf=y", "a/tief/", "a/link->eins.txt",
                "a/weg->nirgends"});
    tree.file("a/\xff\xfe", std::string(3'000'000, 'z'));
    tree.file("a/" + std::string(255, 'n'), "lang");
    const bool attributes = setAttribute(tree.path("a/eins.txt"), "user.xdg.tags", "Rot,Steuer") &&
                            setAttribute(tree.path("a/tief"), "user.brellin", std::string("\0\1", 2));
    ::chmod(tree.path("a/eins.txt").c_str(), 0754);
    ::chmod(tree.path("a/leer").c_str(), 0400);
    ::chmod(tree.path("a/ü").c_str(), 0500);
    const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
    for (const std::string name : {"a/eins.txt", "a/link", "a/tief", "a/ü", "a"})
        ::utimensat(AT_FDCWD, tree.path(name).c_str(), times, AT_SYMLINK_NOFOLLOW);

    const auto report = copyEntry(tree.path("a"), target.path("b"));
    ASSERT_TRUE(report) << messageOf(report);
    for (const std::string name : {"eins.txt", "link", "tief", "ü", "."}) {
        const struct stat copy = statusAt(target.path("b") / name);
        EXPECT_EQ(copy.st_mtim.tv_sec, 1'100'000'000) << name;
        EXPECT_EQ(copy.st_mtim.tv_nsec, 987'654'321) << name;
        EXPECT_EQ(copy.st_mode, statusAt(tree.path("a") / name).st_mode) << name;
    }
    EXPECT_EQ(statusAt(tree.path("a/eins.txt")).st_atim.tv_sec, 1'000'000'000) << "reading leaves no trace";
    EXPECT_EQ(statusAt(target.path("b/eins.txt")).st_atim.tv_sec, 1'000'000'000);
    EXPECT_EQ(snapshotOf(target.path("b")), snapshotOf(tree.path("a")));
    EXPECT_EQ(report->files, 8);
    EXPECT_EQ(report->bytes, 6 + 1 + 1 + 3'000'000 + 4);
    EXPECT_EQ(report->notKept, QStringList());
    if (!attributes)
        GTEST_SKIP() << "no extended attributes on this volume; the rest was checked";
}

TEST_P(CopyEntryTest, keepsAccessListsAndTakesOnNoOthers)
{
    tree.lines({"a/mit=x", "a/ohne=x"});
    if (!setAttribute(tree.path("a/mit"), "system.posix_acl_access", accessList()) ||
        !setAttribute(target.root(), "system.posix_acl_default", accessList()))
        GTEST_SKIP() << "no access lists on this volume";
    ASSERT_TRUE(setAttribute(tree.path("a"), "system.posix_acl_default", accessList()));
    ::chmod(tree.path("a/ohne").c_str(), 0640);
    for (const std::string name : {"a", "a/mit", "a/ohne"}) {
        const Location copy = target.path(Location(name).filename().native() + " Kopie");
        ASSERT_TRUE(copyEntry(tree.path(name), copy));
        for (const char *list : {"system.posix_acl_access", "system.posix_acl_default"})
            EXPECT_EQ(attribute(copy, list), attribute(tree.path(name), list)) << name << list;
        EXPECT_EQ(statusAt(copy).st_mode, statusAt(tree.path(name)).st_mode) << name;
    }
    EXPECT_EQ(attribute(target.path("a Kopie/mit"), "system.posix_acl_access"), accessList());
    EXPECT_EQ(attribute(target.path("a Kopie/ohne"), "system.posix_acl_access"), "(none)");
}

TEST_P(CopyEntryTest, hardLinksStayLinked)
{
    tree.lines({"a/eins=x", "a/tief/tiefer/", "a/allein=x", "draussen/"});
    for (const std::string name : {"a/zwei", "a/tief/tiefer/drei", "draussen/vier"})
        ASSERT_EQ(::link(tree.path("a/eins").c_str(), tree.path(name).c_str()), 0);
    ASSERT_TRUE(copyEntry(tree.path("a"), target.path("b")));
    const struct stat first = statusAt(target.path("b/eins"));
    EXPECT_EQ(first.st_nlink, 3U) << "the name outside is not copied";
    for (const std::string name : {"b/zwei", "b/tief/tiefer/drei"})
        EXPECT_EQ(statusAt(target.path(name)).st_ino, first.st_ino) << name;
    EXPECT_EQ(statusAt(target.path("b/allein")).st_nlink, 1U);
}

TEST_P(CopyEntryTest, holesStayHoles)
{
    const Location file = tree.file("a", "anfang");
    constexpr off_t size = 8 << 20;
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(::pwrite(descriptor, "mitte", 5, size / 2), 5);
    EXPECT_EQ(::ftruncate(descriptor, size), 0);
    ::close(descriptor);
    if (statusAt(file).st_blocks > 1024)
        GTEST_SKIP() << "no holes on this volume";
    ASSERT_TRUE(copyEntry(file, target.path("b")));
    const struct stat copy = statusAt(target.path("b"));
    EXPECT_EQ(copy.st_size, size);
    EXPECT_LT(copy.st_blocks, 1024);
    EXPECT_EQ(target.content("b"), tree.content("a"));

    // A file that is a single hole.
    ASSERT_EQ(::truncate(tree.file("c").c_str(), 1 << 20), 0);
    ASSERT_TRUE(copyEntry(tree.path("c"), target.path("c")));
    EXPECT_EQ(target.content("c"), std::string(1 << 20, '\0'));
}

TEST_P(CopyEntryTest, neverReplacesAnything)
{
    tree.lines({"datei=neu", "ordner/x=neu", "link->datei"});
    target.lines({"datei=alt", "leer/", "voll/y=alt", "weg->nirgends"});
    const std::string before = target.snapshot();
    for (const std::string source : {"datei", "ordner", "link"}) {
        for (const std::string name : {"datei", "leer", "voll", "weg"}) {
            const auto report = copyEntry(tree.path(source), target.path(name));
            ASSERT_FALSE(report) << source << " onto " << name;
            EXPECT_TRUE(report.error().is(std::errc::file_exists)) << messageOf(report);
            EXPECT_EQ(target.snapshot(), before);
        }
    }
}

TEST(CopyEntryTreeTest, linksAreCopiedNotFollowed)
{
    const TempTree tree;
    tree.lines({"ordner/x=x", "zum ordner->ordner", "ins nichts->/nirgends/etwas"});
    for (const std::string name : {"zum ordner", "ins nichts"}) {
        ASSERT_TRUE(copyEntry(tree.path(name), tree.path(name + " Kopie")));
        EXPECT_EQ(std::filesystem::read_symlink(tree.path(name + " Kopie")),
                  std::filesystem::read_symlink(tree.path(name)));
    }
    // Links in the paths of source and target are followed.
    ASSERT_TRUE(copyEntry(tree.path("zum ordner/x"), tree.path("zum ordner/y")));
    EXPECT_EQ(tree.content("ordner/y"), "x");
}

TEST(CopyEntryTreeTest, readsFilesThatClaimToBeEmpty)
{
    const TempTree tree;
    ASSERT_TRUE(copyEntry("/proc/version", tree.path("version")));
    EXPECT_TRUE(tree.content("version").starts_with("Linux"));
}

TEST(CopyEntryTreeTest, aFolderIsNotCopiedIntoItself)
{
    const TempTree tree;
    tree.lines({"weg->a/b"});
    tree.folder("a/b/c");
    const std::string before = tree.snapshot();
    for (const std::string target : {"a/neu", "a/b/c/neu", "weg/neu", "weg/c/neu"}) {
        const auto report = copyEntry(tree.path("a"), tree.path(target));
        ASSERT_FALSE(report) << target;
        EXPECT_TRUE(report.error().is(std::errc::invalid_argument)) << messageOf(report);
        EXPECT_EQ(tree.snapshot(), before);
    }
    EXPECT_TRUE(copyEntry(tree.path("a/b"), tree.path("a/daneben")));
}

TEST(CopyEntryTreeTest, progressGrowsToTheWhole)
{
    const TempTree tree;
    tree.file("a/gross", std::string(5'000'000, 'x'));
    tree.lines({"a/b/klein=12345", "a/link->gross"});
    std::vector<CopyProgress> seen;
    CopyOptions options;
    options.interval = std::chrono::milliseconds(0);
    options.progress = [&](const CopyProgress &progress) { seen.push_back(progress); };
    ASSERT_TRUE(copyEntry(tree.path("a"), tree.path("c"), options));
    for (std::size_t i = 1; i < seen.size(); ++i) {
        EXPECT_LE(seen[i - 1].bytes, seen[i].bytes);
        EXPECT_LE(seen[i].bytes - seen[i - 1].bytes, 32 << 20);
    }
    EXPECT_EQ(seen.back().bytes, 5'000'005);
    EXPECT_EQ(seen.back().files, 3);
    EXPECT_TRUE(
        std::ranges::any_of(seen, [&](const auto &progress) { return progress.current == tree.path("a/b/klein"); }));
}

/// Limits the number of descriptors, as in a process that uses many.
class FewDescriptors {
public:
    FewDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit few{128, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    FewDescriptors(const FewDescriptors &) = delete;
    FewDescriptors &operator=(const FewDescriptors &) = delete;

private:
    rlimit m_before{};
};

constexpr int manyLevels = 10'000;

/// A chain of folders longer than any path, with hard links of one file at both ends.
void makeDeep(const Location &top)
{
    ASSERT_EQ(::mkdir(top.c_str(), 0755), 0);
    const int first = ::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::close(::openat(first, "unten", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
    int at = ::dup(first);
    for (int i = 0; i < manyLevels; ++i) {
        ASSERT_EQ(::mkdirat(at, "ein Ordner", 0755), 0);
        const int next = ::openat(at, "ein Ordner", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(at);
        at = next;
    }
    ASSERT_EQ(::linkat(first, "unten", at, "oben", 0), 0);
    ::close(at);
    ::close(first);
}

TEST(CopyEntryTreeTest, treesOfAnyDepthAreCopiedFlushedAndRemoved)
{
    // In memory if possible: creating so many folders takes half a minute on disk.
    const TempTree tree(test::otherVolume().empty() ? std::filesystem::temp_directory_path() : test::otherVolume());
    makeDeep(tree.path("a"));
    {
        const FewDescriptors few;
        const auto report = copyEntry(tree.path("a"), tree.path("b"));
        ASSERT_TRUE(report) << messageOf(report);
        EXPECT_EQ(report->files, 2);
        EXPECT_EQ(statusAt(tree.path("b/unten")).st_nlink, 2U) << "linked across all levels";
        const auto flushed = flushEntry(tree.path("b"));
        EXPECT_TRUE(flushed) << messageOf(flushed);
        int levels = 0;
        for (int at = ::open(tree.path("b").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); at >= 0; ++levels) {
            const int next = ::openat(at, "ein Ordner", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            ::close(at);
            at = next;
        }
        EXPECT_EQ(levels, manyLevels + 1);
    }
    for (const std::string name : {"a", "b"}) {
        const FewDescriptors few;
        const auto removed = removeOwnCopy(tree.path(name));
        EXPECT_TRUE(removed) << messageOf(removed);
    }
    EXPECT_EQ(tree.snapshot(), "");
}

TEST(CopyEntryTreeTest, filesOnEveryLevelTakeNoDescriptorsEach)
{
    const TempTree tree;
    std::string deepest = "a";
    for (int i = 0; i < 300; ++i) {
        tree.file(deepest + "/datei", "x");
        deepest += "/o";
    }
    tree.folder(deepest);
    {
        const FewDescriptors few;
        const auto report = copyEntry(tree.path("a"), tree.path("b"));
        ASSERT_TRUE(report) << messageOf(report);
    }
    EXPECT_EQ(snapshotOf(tree.path("b")), snapshotOf(tree.path("a")));
    ASSERT_TRUE(removeOwnCopy(tree.path("b")));

    ASSERT_EQ(::mkfifo(tree.path(deepest + "/pipe").c_str(), 0600), 0);
    const FewDescriptors few;
    const auto failed = copyEntry(tree.path("a"), tree.path("b"));
    EXPECT_EQ(messageOf(failed).find("Rest der Kopie"), std::string::npos) << messageOf(failed);
    EXPECT_FALSE(tree.has("b"));
}

TEST(FlushEntryTest, writesEverythingAndForgetsIt)
{
    const TempTree tree;
    tree.lines({"a/eins=x", "a/tief/zwei=y", "a/weg->nirgends"});
    for (int i = 0; i < 100; ++i)
        tree.file("a/viele/" + std::to_string(i), "inhalt");
    for (const std::string name : {"a/eins", "a/weg", "a"}) {
        const auto flushed = flushEntry(tree.path(name));
        EXPECT_TRUE(flushed) << name << messageOf(flushed);
    }
    EXPECT_TRUE(flushEntry(tree.path("fehlt")).error().is(std::errc::no_such_file_or_directory));
}

} // namespace

} // namespace brellin

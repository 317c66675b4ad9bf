#include "Disk/Walk.h"

#include "Support/TempTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <set>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brellin {
namespace {

using test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

/// The path relative to the walked folder.
std::string below(const Location &root, const WalkEntry &entry)
{
    const std::string path = entry.location().native().substr(root.native().size() + 1);
    EXPECT_EQ(entry.depth, std::ranges::count(path, '/')) << path;
    return path;
}

Names shownBy(const Location &root, const WalkOptions &options = {})
{
    Names names;
    const auto outcome = walk(root, options, [&](const WalkEntry &entry) {
        names.push_back(below(root, entry));
        return WalkStep::Continue;
    });
    EXPECT_TRUE(outcome) << outcome.error().message.toStdString();
    EXPECT_EQ(outcome ? outcome->entries : -1, static_cast<std::int64_t>(names.size()));
    return names;
}

Names shownInParallel(const Location &root, const WalkOptions &options = {}, int threads = 4)
{
    std::mutex mutex;
    Names names;
    std::set<std::string> folders = {root.native()};
    const auto outcome = walkParallel(
        root, options,
        [&](const WalkEntry &entry, int) {
            const std::scoped_lock lock(mutex);
            EXPECT_TRUE(folders.contains(std::string(entry.folder))) << "content before its folder";
            if (entry.attributes.isFolder())
                folders.insert(entry.location().native());
            names.push_back(below(root, entry));
            return WalkStep::Continue;
        },
        nullptr, threads);
    EXPECT_TRUE(outcome);
    EXPECT_EQ(outcome ? outcome->entries : -1, static_cast<std::int64_t>(names.size()));
    return names;
}

Names sorted(Names names)
{
    std::ranges::sort(names);
    return names;
}

/// Names in directory order, each folder followed by its content.
void listInto(Names &names, const Location &folder, const std::string &prefix)
{
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(prefix + entry.path().filename().native());
        if (entry.is_directory() && !entry.is_symlink())
            listInto(names, entry.path(), names.back() + "/");
    }
}

TEST(WalkTest, keepsTheFileSystemsOrderAndShowsOddNamesAsTheyAre)
{
    TempTree tree;
    for (int number = 0; number < 300; ++number)
        tree.file("f" + std::to_string(number % 7) + "/g" + std::to_string(number % 3) + "/" + std::to_string(number));
    for (const char *odd : {"zwei\nZeilen", "-rf", "kein \xff\xfe Text", " ", "...", "f1/\\"})
        tree.file(odd);
    Names expected;
    listInto(expected, tree.root(), "");
    EXPECT_EQ(shownBy(tree.root()), expected);
    EXPECT_EQ(sorted(shownInParallel(tree.root())), sorted(expected));
}

TEST(WalkTest, leavesOutWhatTheOptionsSay)
{
    TempTree tree;
    tree.lines({"a.txt", "sub/b.txt", "sub/deep/c.txt", ".dot/x", "sub/.e", "listed", "sub/listed", "listedToo/y",
                ".hidden=listed\r\n\nlistedToo", "Fotos.photoslibrary/m.jpg", "sub/A.app/in", "file.app",
                "node_modules/n", "sub/node_modules/n", "link->sub", "gone->nowhere", "sub/up->..", "pipe.rtfd/t"});
    const Names all = sorted(shownBy(tree.root()));
    EXPECT_EQ(all.size(), 27u);
    const auto has = [](const Names &names, const char *name) { return std::ranges::count(names, name) == 1; };

    WalkOptions options;
    options.hidden = false;
    options.insidePackages = false;
    options.prune = [](std::string_view name) { return name == "node_modules"; };
    const Names expected = {"Fotos.photoslibrary",
                            "a.txt",
                            "file.app",
                            "gone",
                            "link",
                            "node_modules",
                            "pipe.rtfd",
                            "sub",
                            "sub/A.app",
                            "sub/b.txt",
                            "sub/deep",
                            "sub/deep/c.txt",
                            "sub/listed",
                            "sub/node_modules",
                            "sub/up"};
    EXPECT_EQ(sorted(shownBy(tree.root(), options)), expected);
    EXPECT_EQ(sorted(shownInParallel(tree.root(), options)), expected);
    EXPECT_TRUE(has(all, ".hidden") && has(all, "Fotos.photoslibrary/m.jpg") && has(all, "node_modules/n"));

    WalkOptions flat;
    flat.subfolders = false;
    EXPECT_EQ(shownBy(tree.root(), flat).size(), 12u);
    EXPECT_EQ(sorted(shownBy(tree.path("link"))), sorted(shownBy(tree.path("sub"))))
        << "a link as the start is followed";
}

TEST(WalkTest, skipsAFolderAndStopsWhenTold)
{
    TempTree tree;
    tree.lines({"one/a", "one/b", "two/c"});
    Names names;
    const auto skipping = [&](const WalkEntry &entry) {
        names.emplace_back(entry.name);
        EXPECT_EQ(entry.depth, entry.name.size() == 3 ? 0 : 1);
        return entry.name == "one" ? WalkStep::SkipFolder : WalkStep::Continue;
    };
    ASSERT_TRUE(walk(tree.root(), {}, skipping));
    EXPECT_EQ(sorted(names), (Names{"c", "one", "two"}));

    int calls = 0;
    const auto stopped = walk(tree.root(), {}, [&](const WalkEntry &) { return ++calls, WalkStep::Stop; });
    EXPECT_TRUE(stopped && stopped->entries == 1 && calls == 1);
    std::atomic<int> parallelCalls = 0;
    const auto stop = [&](const WalkEntry &, int) { return ++parallelCalls, WalkStep::Stop; };
    EXPECT_TRUE(walkParallel(tree.root(), {}, stop, nullptr, 4));
    EXPECT_LE(parallelCalls, 4);
}

TEST(WalkTest, endsWhenCancelledAndLetsNoExceptionOut)
{
    TempTree tree;
    for (int number = 0; number < 100; ++number)
        tree.file(std::to_string(number % 10) + "/" + std::to_string(number));
    JobControl control;
    int calls = 0;
    const auto cancelling = [&](const WalkEntry &) {
        if (++calls == 5)
            control.cancel();
        return WalkStep::Continue;
    };
    const auto serial = walk(tree.root(), {}, cancelling, &control);
    EXPECT_TRUE(!serial && serial.error().isCancelled());
    EXPECT_EQ(calls, 5);

    JobControl other;
    const auto cancelAtOnce = [&](const WalkEntry &, int) { return other.cancel(), WalkStep::Continue; };
    const auto parallel = walkParallel(tree.root(), {}, cancelAtOnce, &other, 4);
    EXPECT_TRUE(!parallel && parallel.error().isCancelled());

    EXPECT_FALSE(walk(tree.root(), {}, [](const WalkEntry &) -> WalkStep { throw 1; }));
    EXPECT_FALSE(walkParallel(tree.root(), {}, [](const WalkEntry &, int) -> WalkStep { throw std::bad_alloc(); }));
}

TEST(WalkTest, failsOnlyForItsOwnFolder)
{
    TempTree tree;
    tree.file("file");
    tree.link("dangling", "nowhere");
    const auto show = [](const WalkEntry &) { return WalkStep::Continue; };
    const auto showParallel = [](const WalkEntry &, int) { return WalkStep::Continue; };
    const auto causeFor = [&](const char *name) {
        EXPECT_FALSE(walkParallel(tree.path(name), {}, showParallel));
        return walk(tree.path(name), {}, show).error().code;
    };
    EXPECT_EQ(causeFor("missing"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(causeFor("dangling"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(causeFor("file"), std::errc::not_a_directory);
    EXPECT_FALSE(walk({}, {}, show));
}

TEST(WalkTest, passesOverFoldersItMayNotRead)
{
    TempTree tree;
    tree.lines({"open/a", "locked/b", "unsearchable/c"});
    std::filesystem::permissions(tree.root(), std::filesystem::perms(0755));
    std::filesystem::permissions(tree.path("locked"), std::filesystem::perms(0));
    std::filesystem::permissions(tree.path("unsearchable"), std::filesystem::perms(0444));
    const bool privileged = ::geteuid() == 0;
    if (privileged && ::seteuid(65534) != 0)
        GTEST_SKIP() << "privileges cannot be dropped: every folder is readable";
    WalkOptions options;
    options.attributes = Attribute::Size;
    Names unreadable;
    Names names;
    const auto outcome = walk(tree.root(), options, [&](const WalkEntry &entry) {
        (entry.unreadable ? unreadable : names).emplace_back(entry.name);
        return WalkStep::Continue;
    });
    if (privileged) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->unreadable, std::vector{tree.path("locked")});
    EXPECT_EQ(sorted(names), (Names{"a", "locked", "open", "unsearchable"}));
    EXPECT_THAT(unreadable, ElementsAre("c")) << "listed, but not to be examined";
}

TEST(WalkTest, readsTheAttributesAskedForAndNoOthers)
{
    TempTree tree;
    tree.file("file", std::string(5000, 'x'));
    tree.link("link", "somewhere");
    const auto attributesOf = [&](Attribute wanted, std::string_view name) {
        FileAttributes found;
        WalkOptions options;
        options.attributes = wanted;
        EXPECT_TRUE(walk(tree.root(), options, [&](const WalkEntry &entry) {
            if (entry.name == name)
                found = entry.attributes;
            return WalkStep::Continue;
        }));
        return found;
    };
    constexpr Attribute all = Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created |
                              Attribute::Accessed | Attribute::Mode;
    for (const char *name : {"file", "link"})
        EXPECT_EQ(attributesOf(all, name), readAttributes(tree.path(name)).value()) << name;
    FileAttributes sizeOnly;
    sizeOnly.kind = EntryKind::File;
    sizeOnly.size = 5000;
    sizeOnly.diskSize = readAttributes(tree.path("file")).value().diskSize;
    EXPECT_EQ(attributesOf(Attribute::Size, "file"), sizeOnly);
    FileAttributes kindOnly;
    kindOnly.kind = EntryKind::Link;
    EXPECT_EQ(attributesOf(Attribute::None, "link"), kindOnly);
}

TEST(WalkTest, showsWhatVanishesAndNeverFollowsALinkThatTookAFoldersPlace)
{
    TempTree tree;
    TempTree elsewhere;
    elsewhere.file("secret");
    tree.lines({"a", "b", "c", "folder/inside"});
    WalkOptions options;
    options.attributes = Attribute::Size;
    Names readable;
    Names names;
    const auto outcome = walk(tree.root(), options, [&](const WalkEntry &entry) {
        names.emplace_back(entry.name);
        if (!entry.unreadable)
            readable.emplace_back(entry.name);
        for (const char *name : {"a", "b", "c"})
            std::filesystem::remove(tree.path(name));
        if (entry.name == "folder") {
            std::filesystem::rename(tree.path("folder"), elsewhere.path("moved"));
            tree.link("folder", elsewhere.root().native());
        }
        return WalkStep::Continue;
    });
    ASSERT_TRUE(outcome);
    EXPECT_THAT(sorted(names), ElementsAre("a", "b", "c", "folder"));
    EXPECT_LE(readable.size(), 2u) << "the first and the folder";
    EXPECT_TRUE(outcome->unreadable.empty());
}

TEST(WalkTest, leavesAccessTimesAlone)
{
    TempTree tree;
    tree.file("folder/a");
    const timespec times[2] = {{1'000'000'000, 0}, {1'600'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, tree.path("folder").c_str(), times, 0), 0);
    shownBy(tree.root());
    EXPECT_EQ(readAttributes(tree.path("folder")).value().accessed, instantFrom(times[0]));
}

/// In memory if possible: an ext4 file system is slow to reuse inodes freed a moment ago.
Location quickFolder()
{
    const Location other = test::otherVolume();
    return other.empty() ? std::filesystem::temp_directory_path() : other;
}

/// A chain of folders "d" longer than any path, each with files "a" and "z".
class DeepTree {
public:
    explicit DeepTree(int depth)
    {
        int at = ::open(m_tree.root().c_str(), O_RDONLY | O_DIRECTORY);
        for (int level = 0; level < depth; ++level) {
            ::close(::openat(at, "a", O_CREAT | O_WRONLY, 0644));
            ::mkdirat(at, "d", 0755);
            ::close(::openat(at, "z", O_CREAT | O_WRONLY, 0644));
            const int next = ::openat(at, "d", O_RDONLY | O_DIRECTORY);
            ::close(std::exchange(at, next));
        }
        ::close(at);
    }
    ~DeepTree()
    {
        if (std::system(("rm -rf '" + m_tree.root().native() + "'/d").c_str()) != 0)
            ADD_FAILURE() << "the deep tree stays behind";
    }
    const Location &root() const { return m_tree.root(); }

private:
    TempTree m_tree{quickFolder()};
};

TEST(WalkTest, goesAnyDepthWithFewOpenFolders)
{
    constexpr int depth = 10'000;
    const DeepTree tree(depth);
    std::int64_t deepest = 0;
    std::ptrdiff_t mostOpen = 0;
    const auto outcome = walk(tree.root(), {}, [&](const WalkEntry &entry) {
        deepest = std::max<std::int64_t>(deepest, entry.depth);
        if (entry.depth % 1000 == 999)
            mostOpen = std::max(mostOpen, std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
        return WalkStep::Continue;
    });
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->entries, 3 * depth);
    EXPECT_TRUE(outcome->unreadable.empty());
    EXPECT_EQ(deepest, depth - 1);
    EXPECT_LT(mostOpen, 64);

    WalkOptions options;
    options.attributes = Attribute::Size;
    const auto parallel = walkParallel(tree.root(), options, [](const WalkEntry &, int) { return WalkStep::Continue; });
    EXPECT_EQ(parallel.value().entries, 3 * depth);
}

TEST(WalkTest, findsItsWayBackFromAFolderThatWasMoved)
{
    constexpr int depth = 100;
    // From the deepest folder ".." leads to the moved one, and from there away from the original path.
    const auto walkAndMove = [](const DeepTree &tree, const std::function<void()> &alsoDo) {
        return walk(tree.root(), {}, [&](const WalkEntry &entry) {
            if (entry.depth == depth - 1 && entry.name == "d") {
                std::filesystem::rename(tree.root() / "d/d/d/d/d/d", tree.root() / "d/moved");
                alsoDo();
            }
            return WalkStep::Continue;
        });
    };
    const DeepTree tree(depth);
    const auto moved = walkAndMove(tree, [] {});
    EXPECT_EQ(moved.value().entries, 3 * depth);
    EXPECT_TRUE(moved.value().unreadable.empty());

    const DeepTree second(depth);
    const auto replaced = walkAndMove(second, [&] {
        std::filesystem::rename(second.root() / "d/d", second.root() / "d/away");
        std::filesystem::create_directories(second.root() / "d/d/d/d/d");
    });
    EXPECT_EQ(replaced.value().unreadable.size(), 4U)
        << "other folders under the old paths are not taken for the old ones";
}

TEST(WalkTest, remembersTheNamesOfFoldersThatItHadToClose)
{
    TempTree tree(quickFolder());
    std::string chain;
    for (int level = 0; level < 50; ++level)
        chain += "/d";
    // One of the chains is listed early in any directory order.
    tree.folder("first" + chain);
    for (int number = 0; number < 6000; ++number)
        ::close(
            ::open(tree.path("Ein recht langer Name, damit es viele Bytes werden " + std::to_string(number)).c_str(),
                   O_CREAT | O_WRONLY, 0644));
    tree.folder("last" + chain);
    EXPECT_EQ(shownBy(tree.root()).size(), 6000u + 2 * 51);
}

TEST(WalkTest, sharesOneHugeFolderBetweenThreads)
{
    TempTree tree(quickFolder());
    for (int number = 0; number < 30'000; ++number) {
        const std::string name = "Eintrag mit längerem Namen " + std::to_string(number);
        if (number % 100 == 0)
            tree.lines({name + "/.hidden=weg", name + "/weg", name + "/da"});
        else
            ::close(::open(tree.path(name).c_str(), O_CREAT | O_WRONLY, 0644));
    }
    std::ofstream list(tree.path(".hidden"));
    for (int number = 1; number < 30'000; number += 200)
        list << "Eintrag mit längerem Namen " << number << "\n";
    list.close();
    WalkOptions options;
    options.attributes = Attribute::Size | Attribute::Identity;
    options.hidden = false;
    const Names serial = sorted(shownBy(tree.root(), options));
    EXPECT_EQ(serial.size(), 30'300u - 150);
    EXPECT_EQ(sorted(shownInParallel(tree.root(), options)), serial);
    EXPECT_EQ(sorted(shownInParallel(tree.root(), options, 1)), serial);
}

/// Runs in a process with its own mounts; returns 0 if everything is correct.
int walkAcrossMounts(const Location &root)
{
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("none", (root / "volume").c_str(), "tmpfs", 0, nullptr) != 0 ||
        ::mount(root.c_str(), (root / "inner/loop").c_str(), nullptr, MS_BIND, nullptr) != 0)
        return 77;
    std::ofstream(root / "volume/file");
    WalkOptions here;
    here.otherVolumes = false;
    const bool stays = sorted(shownBy(root, here)) == Names{"inner", "inner/loop", "volume"} &&
                       shownBy(root / "inner", here) == Names{"loop"};
    const Names all = {"inner", "inner/loop", "volume", "volume/file"};
    const bool ends = sorted(shownBy(root)) == all && sorted(shownInParallel(root)) == all;
    // Inside the loop it is detected only one mount later.
    const bool endsInside = sorted(shownBy(root / "inner")) == Names{"loop", "loop/inner", "loop/volume"};
    return (stays ? 0 : 1) + (ends ? 0 : 2) + (endsInside ? 0 : 4);
}

TEST(WalkTest, endsInAMountLoopAndStaysOnItsVolume)
{
    TempTree tree;
    tree.folder("volume");
    tree.folder("inner/loop");
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(walkAcrossMounts(tree.root()));
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77)
        GTEST_SKIP() << "mounting is not permitted here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace brellin

#include "System/FileUserDefaults.h"

#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/AtomicWrite.h"
#include "System/FileLock.h"
#include "System/MemoryUserDefaults.h"
#include "System/PrivateFolders.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <future>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using brellin::test::TempTree;

namespace {

using Change = UserDefaults::Change;
using Old = std::optional<QByteArray>;

class FileUserDefaultsTest : public ::testing::Test {
protected:
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(tree.path("s/einstellungen")))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }

    TempTree tree;
    FileUserDefaults defaults{tree.path("s/einstellungen")};
};

TEST_F(FileUserDefaultsTest, KeepsValuesAndListsForTheNextStart)
{
    EXPECT_FALSE(defaults.value(u"zahl"_qs));
    EXPECT_FALSE(defaults.json(u"liste"_qs));
    const QDateTime date = QDateTime::fromSecsSinceEpoch(1'800'000'000, Qt::UTC);
    EXPECT_TRUE(defaults.setValue(u"zahl"_qs, 24));
    EXPECT_TRUE(defaults.setValue(u"schalter"_qs, false));
    EXPECT_TRUE(defaults.setValue(u"text"_qs, u"ä, b; \"c\""_qs));
    EXPECT_TRUE(defaults.setValue(u"datum"_qs, date));
    EXPECT_TRUE(defaults.update(u"liste"_qs, [](const Old &) { return Change{"[1]"}; }));

    const FileUserDefaults next(tree.path("s/einstellungen"));
    EXPECT_EQ(next.value(u"zahl"_qs)->toInt(), 24);
    EXPECT_EQ(next.value(u"schalter"_qs)->toBool(), false);
    EXPECT_EQ(next.value(u"text"_qs)->toString(), u"ä, b; \"c\""_qs);
    EXPECT_EQ(next.value(u"datum"_qs)->toDateTime(), date);
    EXPECT_EQ(next.json(u"liste"_qs), "[1]");
    for (const char *const name : {"s/einstellungen", "s/einstellungen/liste.json"}) {
        struct stat status{};
        ASSERT_EQ(::stat(tree.path(name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 077U, 0U) << name << " is the user's alone";
    }
}

TEST_F(FileUserDefaultsTest, UpdateSeesWhatOthersWrote)
{
    FileUserDefaults other(tree.path("s/einstellungen"));
    EXPECT_TRUE(defaults.update(u"l"_qs, [](const Old &) { return Change{"[1]"}; }));
    EXPECT_TRUE(other.update(u"l"_qs, [](const Old &old) {
        EXPECT_EQ(old, "[1]");
        return Change{"[1,2]"};
    }));
    EXPECT_TRUE(defaults.update(u"l"_qs, [](const Old &old) {
        EXPECT_EQ(old, "[1,2]");
        return std::optional<Change>();
    }));
    EXPECT_EQ(defaults.json(u"l"_qs), "[1,2]");
}

TEST_F(FileUserDefaultsTest, TwoProgramsLoseNothing)
{
    constexpr int programs = 4;
    constexpr int rounds = 25;
    std::vector<pid_t> children;
    for (int number = 0; number < programs; ++number) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            FileUserDefaults own(tree.path("s/einstellungen"));
            bool good = true;
            for (int round = 0; round < rounds; ++round) {
                const auto append = [](const Old &old) { return Change{old.value_or("") + 'x'}; };
                good = own.update(u"l"_qs, append).has_value() && good;
                good = own.setValue(u"wert%1"_qs.arg(number), round).has_value() && good;
            }
            ::_exit(good ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(defaults.json(u"l"_qs)->size(), programs * rounds);
    for (int number = 0; number < programs; ++number)
        EXPECT_EQ(defaults.value(u"wert%1"_qs.arg(number))->toInt(), rounds - 1);
}

/// Also between processes: a second object on the same folder acts as another one.
TEST_F(FileUserDefaultsTest, ASwitchDoesNotWaitForALongList)
{
    const StoredLimits limits{.longLists = {u"verlauf"_qs}};
    FileUserDefaults own(tree.path("s/einstellungen"), limits);
    FileUserDefaults others(tree.path("s/einstellungen"), limits);
    const auto append = [](const Old &old) { return Change{old.value_or("") + "x"}; };
    ASSERT_TRUE(own.update(u"verlauf"_qs, [&](const Old &old) {
        auto here = std::async(std::launch::async, [&] { return own.setValue(u"schalter"_qs, true); });
        EXPECT_EQ(here.wait_for(std::chrono::seconds(10)), std::future_status::ready) << "waits for the history";
        EXPECT_TRUE(others.setValue(u"zahl"_qs, 1));
        EXPECT_FALSE(FileLock::tryNow(tree.path("s/einstellungen/verlauf.lock"))) << "the list itself is locked";
        return append(old);
    }));
    EXPECT_TRUE(own.value(u"schalter"_qs) && own.value(u"zahl"_qs));

    std::vector<std::thread> threads;
    for (FileUserDefaults *const program : {&own, &own, &others, &others})
        threads.emplace_back([&append, program] {
            for (int i = 0; i < 10; ++i)
                EXPECT_TRUE(program->update(u"verlauf"_qs, append));
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(own.json(u"verlauf"_qs)->size(), 41);
    EXPECT_TRUE(own.replace(u"verlauf"_qs, std::nullopt));
}

TEST_F(FileUserDefaultsTest, KeepsDamagedListsAside)
{
    tree.file("s/einstellungen/l.json", "[{kaputt");
    EXPECT_TRUE(defaults.update(u"l"_qs, [](const Old &) { return Change{"[]", true}; }));
    const std::vector<std::string> names = files();
    ASSERT_EQ(names.size(), 4U) << "list, its last good version, lock and what was kept aside";
    const auto aside = std::ranges::find_if(
        names, [](const std::string &name) { return name.starts_with("l.beschädigt-") && name.ends_with(".json"); });
    ASSERT_NE(aside, names.end());
    EXPECT_EQ(tree.content("s/einstellungen/" + *aside), "[{kaputt");
    EXPECT_EQ(tree.content("s/einstellungen/l.json"), "[]");

    tree.file("s/einstellungen/settings.json", "{kaputt");
    EXPECT_FALSE(defaults.value(u"zahl"_qs));
    EXPECT_TRUE(defaults.setValue(u"zahl"_qs, 1));
    EXPECT_EQ(files().size(), 7U) << "the values twice, and what was kept of them";
}

TEST_F(FileUserDefaultsTest, KeepsEveryVersionOfManyWithinAMillisecond)
{
    for (int i = 0; i <= 50; ++i)
        ASSERT_TRUE(defaults.replace(u"l"_qs, QByteArray::number(i)));
    EXPECT_EQ(std::ranges::count_if(files(), [](const std::string &name) { return name.starts_with("l.beschädigt-"); }),
              50);
}

TEST_F(FileUserDefaultsTest, AnUnreadableListIsNotAnEmptyOne)
{
    // A folder in its place is unreadable even for root.
    tree.folder("s/einstellungen/l.json");
    bool asked = false;
    const auto updated = defaults.update(u"l"_qs, [&](const Old &) {
        asked = true;
        return Change{"[]"};
    });
    EXPECT_FALSE(updated);
    EXPECT_FALSE(asked);
    EXPECT_TRUE(tree.has("s/einstellungen/l.json"));
}

TEST_F(FileUserDefaultsTest, WhatALinkHidesIsNotAbsent)
{
    const auto read = [&](const char *folder) { return FileUserDefaults(tree.path(folder)).read(u"l"_qs); };
    const auto isAbsent = [&](const char *folder) { return !read(folder).value_or(Old("")).has_value(); };
    EXPECT_TRUE(isAbsent("fehlt/tief")) << "no folder yet";
    tree.lines({"datei=x", "gut/"});
    EXPECT_FALSE(read("datei/tief")) << "a file where the folder should be is no empty list";
    // A volume that is not mounted: the link to the file, the folder or one above it leads nowhere.
    std::filesystem::create_directory_symlink(tree.path("weg"), tree.path("verweis"));
    std::filesystem::create_symlink(tree.path("weg/l.json"), tree.path("gut/l.json"));
    for (const char *const folder : {"verweis", "verweis/tief", "gut"}) {
        const Result<Old> hidden = read(folder);
        ASSERT_FALSE(hidden) << folder;
        EXPECT_TRUE(hidden.error().message.contains(u"führt ins Leere"_qs)) << folder;
    }
    // The link to a folder that exists hides nothing.
    std::filesystem::create_directory_symlink(tree.path("gut"), tree.path("weg"));
    std::filesystem::remove(tree.path("gut/l.json"));
    EXPECT_TRUE(isAbsent("verweis"));
}

TEST_F(FileUserDefaultsTest, TellsByTheVersionThatAListMayHaveChanged)
{
    const QString list = u"liste"_qs;
    const Location file = defaults.fileOf(list);
    const auto overwrite = [&](const char *text) { std::fstream(file, std::ios::in | std::ios::out) << text; };
    const auto replace = [&](const char *text) {
        struct stat old{};
        ASSERT_EQ(::stat(file.c_str(), &old), 0);
        const Location other = tree.file("anderswo", text);
        const std::array times{old.st_atim, old.st_mtim};
        ASSERT_EQ(::utimensat(AT_FDCWD, other.c_str(), times.data(), 0), 0);
        std::filesystem::rename(other, file);
    };
    const std::vector<std::pair<const char *, std::function<void()>>> changes{
        {"stored first", [&] { (void)defaults.update(list, [](const Old &) { return Change{"[1]"}; }); }},
        {"stored again", [&] { (void)defaults.update(list, [](const Old &) { return Change{"[2]"}; }); }},
        {"written by another program", [&] { overwrite("[3]"); }},
        {"replaced by a file of the same size and time", [&] { replace("[4]"); }},
        {"removed", [&] { std::filesystem::remove(file); }},
        {"the folder replaced", [&] {
             std::filesystem::rename(file.parent_path(), tree.path("s/früher"));
             std::filesystem::create_directory(file.parent_path());
         }}};
    EXPECT_FALSE(defaults.version(list)) << "no folder yet";
    ASSERT_TRUE(defaults.setValue(u"zahl"_qs, 1));
    for (const auto &[what, change] : changes) {
        ASSERT_TRUE(test::waitUntil([&] { return defaults.version(list).has_value(); })) << "before: " << what;
        const std::optional<StoredVersion> before = defaults.version(list);
        EXPECT_EQ(defaults.version(list), before) << what;
        change();
        EXPECT_FALSE(defaults.version(list)) << "another change might get the same time: " << what;
        ASSERT_TRUE(test::waitUntil([&] { return defaults.version(list).has_value(); })) << what;
        EXPECT_NE(defaults.version(list), before) << what;
    }
}

TEST_F(FileUserDefaultsTest, AMemoryCopyNeverWritesThrough)
{
    EXPECT_TRUE(defaults.setValue(u"zahl"_qs, 1));
    EXPECT_TRUE(defaults.update(u"l"_qs, [](const Old &) { return Change{"[1]"}; }));
    const std::string before = tree.snapshot();
    MemoryUserDefaults memory(&defaults);
    EXPECT_EQ(memory.value(u"zahl"_qs)->toInt(), 1);
    EXPECT_TRUE(memory.setValue(u"zahl"_qs, 2));
    EXPECT_TRUE(memory.update(u"l"_qs, [](const Old &old) { return Change{*old + "2"}; }));
    EXPECT_EQ(memory.value(u"zahl"_qs)->toInt(), 2);
    EXPECT_EQ(memory.json(u"l"_qs), "[1]2");
    EXPECT_EQ(tree.snapshot(), before);
}

} // namespace

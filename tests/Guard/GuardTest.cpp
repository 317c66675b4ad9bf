#include "Guard/Guard.h"

#include "Guard/FreshGuard.h"
#include "Guard/GuardKeys.h"
#include "Guard/ProfileJson.h"
#include "Guard/StoredProfiles.h"
#include "Support/PrivateMount.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/FileUserDefaults.h"
#include "System/StoredList.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace brellin;
using namespace brellin::test;

using Review = Guard::Review;

namespace {

/// Entries reached by other paths than those stored.
class GuardTest : public testing::Test {
protected:
    FolderProfile profile(std::string_view root, std::initializer_list<const char16_t *> entries) const
    {
        FolderProfile made;
        made.name = u"Werk"_qs;
        made.rootPath = textOf(tree.path(root));
        for (const char16_t *const entry : entries)
            made.protectedEntries.push_back({.path = QString::fromUtf16(entry), .reason = {}});
        return made;
    }
    Guard guard(const std::vector<FolderProfile> &profiles) const { return {locations, profiles}; }
    bool refused(const Guard &guard, std::string_view entry) const
    {
        const Location at = tree.path(entry);
        const std::string folder = resolvedLocation(at.parent_path()).value_or(at.parent_path()).native();
        const bool refused = !guard.check(at, Review::Asked).has_value();
        EXPECT_EQ(guard.isProtectedAsWhole(at), refused) << at;
        EXPECT_EQ(!guard.checkIn(locations.examined(folder), at, Review::Asked).has_value(), refused) << at;
        return refused;
    }

    TempTree tree;
    SystemLocations locations{tree.path("home")};
};

} // namespace

TEST_F(GuardTest, findsWhatIsProtectedByWhateverPath)
{
    tree.lines({"home/echt/Werk/fest/tief/a=1", "home/echt/Werk/frei/b=2", "home/kurz->echt", "home/ab->echt/Werk/fest",
                "home/fremd/c=3", "home/echt/Werk/verweis->../../fremd", "home/echt/Werk/fester=4"});
    const std::vector<std::string_view> kept{"home/echt/Werk/fest",
                                             "home/kurz/Werk/fest/tief/a",
                                             "home/ab/tief/a",
                                             "home/ab/tief",
                                             "home/echt/Werk/verweis", // the symlink itself …
                                             "home/fremd/c",           // … and its target
                                             "home/kurz/Werk",         // contains them
                                             "home/echt"};
    for (const char *const root : {"home/echt/Werk", "home/kurz/Werk"}) {
        const Guard asked = guard({profile(root, {u"fest", u"verweis"})});
        for (const std::string_view one : kept)
            EXPECT_TRUE(refused(asked, one)) << root << ' ' << one;
        for (const char *const free :
             {"home/echt/Werk/frei/b", "home/kurz/Werk/frei", "home/kurz/Werk/fester", "home/ab"})
            EXPECT_FALSE(refused(asked, free)) << root << ' ' << free;
    }
    const Failure why =
        guard({profile("home/echt/Werk", {u"fest"})}).check(tree.path("home/ab/tief/a"), Review::Asked).error();
    EXPECT_EQ(why.message, u"Im Projekt „Werk“ geschützt („fest“) und bleibt, wie es ist."_qs);
    EXPECT_EQ(guard({}).check("/usr/bin/env", Review::Asked).error().message, SystemLocations::message());
}

TEST_F(GuardTest, readsEntriesAsOlderVersionsStoredThem)
{
    tree.lines({"home/Werk/fest/a=1", "home/Werk/rand/b=2", "home/Werk/c=3", "home/d=4"});
    const QString absolute = textOf(tree.path("home/Werk/fest"));
    FolderProfile made = profile("home/Werk", {u" rand ", u"", u" "});
    made.protectedEntries.push_back({.path = absolute, .reason = {}});
    const Guard asked = guard({made});
    EXPECT_TRUE(refused(asked, "home/Werk/fest/a"));
    EXPECT_TRUE(refused(asked, "home/Werk/rand/b"));
    EXPECT_FALSE(refused(asked, "home/Werk/c"));
    EXPECT_FALSE(refused(asked, "home/d"));
}

TEST_F(GuardTest, protectsWhatAnEntryNamesOutsideItsProject)
{
    tree.lines({"home/Werk/c=1", "home/Werk/fest/a=2", "home/extern/d=3", "home/e=4"});
    const Guard beside = guard({profile("home/Werk", {u"../extern"})});
    EXPECT_TRUE(refused(beside, "home/extern/d"));
    EXPECT_FALSE(refused(beside, "home/Werk/c"));
    EXPECT_FALSE(refused(beside, "home/e"));
    // The project as a whole, but nothing around it.
    for (const char16_t *const entry : {u".", u"fest/..", u"..", u"../../.."}) {
        const Guard whole = guard({profile("home/Werk", {entry})});
        EXPECT_TRUE(refused(whole, "home/Werk/c"));
        EXPECT_FALSE(refused(whole, "home/e"));
    }
}

TEST_F(GuardTest, readsNoStoredProfileWithoutAWholeRootPath)
{
    FileUserDefaults defaults(tree.path("settings"));
    const auto stored = [&](const char *root) {
        const QByteArray json = QByteArray(R"([{"rootPath": ")") + root + R"(", "protected": [{"path": "fest"}]}])";
        EXPECT_TRUE(defaults.replace(GuardKeys::profiles, json));
        const auto profiles = storedProfiles(defaults);
        return profiles ? QString() : profiles.error().message;
    };
    EXPECT_EQ(stored("/home/anna/Werk"), QString());
    for (const char *const root : {"", "~/Werk", "Downloads/Werk", "."})
        EXPECT_TRUE(stored(root).contains(u"rootPath“: hier gehört ein ganzer Pfad hin"_qs))
            << stored(root).toStdString();
}

TEST_F(GuardTest, knowsPlacesThroughOtherMounts)
{
    tree.lines({"home/Werk/fest/a=1", "home/Werk/b=2", "home/anders/"});
    const PrivateMount mount = PrivateMount::bind(tree.path("home/Werk"), tree.path("home/anders"));
    if (!mount)
        GTEST_SKIP() << "no mounts here";
    const Guard asked = guard({profile("home/Werk", {u"fest"})});
    EXPECT_TRUE(refused(asked, "home/anders/fest/a"));
    EXPECT_FALSE(refused(asked, "home/anders/b"));
    EXPECT_EQ(asked.entryOf(tree.path("home/anders/b")), asked.entryOf(tree.path("home/Werk/b")));
}

TEST_F(GuardTest, tellsEntriesApartByPlaceAndNotByPath)
{
    tree.lines({"home/a/x=1", "home/a/y=2", "home/b->a", "home/c->a/x", "home/b2/x=3"});
    const Guard asked = guard({});
    const auto entryAt = [&](const char *entry) { return asked.entryOf(tree.path(entry)); };
    EXPECT_EQ(entryAt("home/a/x"), entryAt("home/b/x"));
    EXPECT_NE(entryAt("home/a/x"), entryAt("home/b/y"));
    EXPECT_NE(entryAt("home/a/x"), entryAt("home/c"));
    EXPECT_NE(entryAt("home/a/x"), entryAt("home/b2/x"));
    EXPECT_EQ(entryAt("home/fehlt/x"), entryAt("home/fehlt/x"));
    EXPECT_NE(entryAt("home/fehlt/x"), entryAt("home/fehlt2/x"));
}

TEST_F(GuardTest, seesAProjectThroughALink)
{
    tree.lines({"home/Werk/package.json={}", "home/Werk/tief/a=1", "home/ab->Werk/tief", "home/frei/b=2"});
    const Guard asked = guard({});
    EXPECT_TRUE(asked.isInProject(tree.path("home/ab/a")));
    EXPECT_FALSE(asked.isInProject(tree.path("home/ab"))); // the symlink lies in the home folder
    EXPECT_FALSE(asked.isInProject(tree.path("home/frei/b")));
    EXPECT_FALSE(asked.check(tree.path("home/ab/a"), Review::Missing));
    EXPECT_TRUE(asked.check(tree.path("home/ab/a"), Review::Asked));
    EXPECT_TRUE(guard({profile("home/Werk", {})}).check(tree.path("home/ab/a"), Review::Missing));
    EXPECT_EQ(guard({profile("home/Werk", {})}).profileOf(tree.path("home/ab")).value_or(FolderProfile()).name,
              u"Werk"_qs);
}

TEST_F(GuardTest, usesTheProfilesAsTheyAreStoredAtEachQuestion)
{
    tree.lines({"home/Werk/fest/a=1", "home/Werk/frei/b=2"});
    FileUserDefaults defaults(tree.path("s"));
    ASSERT_TRUE(defaults.setValue(u"zahl"_qs, 1));
    FreshGuard fresh(locations, defaults);
    const auto settle = [&] { return waitUntil([&] { return defaults.version(GuardKeys::profiles).has_value(); }); };
    using Kept = std::pair<bool, bool>;
    const auto kept = [&] {
        return Kept(!fresh.check(tree.path("home/Werk/fest/a"), Review::Asked).has_value(),
                    !fresh.check(tree.path("home/Werk/frei/b"), Review::Asked).has_value());
    };
    ASSERT_TRUE(settle());
    EXPECT_EQ(kept(), Kept(false, false));
    ASSERT_TRUE(storeList(defaults, GuardKeys::profiles, std::vector{profile("home/Werk", {u"fest"})}));
    ASSERT_TRUE(settle());
    EXPECT_EQ(kept(), Kept(true, false));

    // By another program, in place and with the same size.
    const Location file = defaults.fileOf(GuardKeys::profiles);
    const QByteArray text = defaults.json(GuardKeys::profiles)->replace("\"fest\"", "\"frei\"");
    ASSERT_TRUE(settle());
    EXPECT_EQ(kept(), Kept(true, false));
    std::fstream(file, std::ios::in | std::ios::out) << text.constData();
    ASSERT_TRUE(settle());
    EXPECT_EQ(kept(), Kept(false, true));

    EXPECT_EQ(kept(), Kept(false, true));
    std::filesystem::remove(file);
    EXPECT_EQ(kept(), Kept(true, true)) << "lost, since its last good version is there";
}

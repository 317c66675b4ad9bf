#include "System/StoredList.h"

#include "Support/FailingCalls.h"
#include "Support/PrivateMount.h"
#include "Support/TempTree.h"
#include "System/FileUserDefaults.h"
#include "System/StoredKind.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>

using namespace brellin;
using brellin::test::PrivateMount;
using brellin::test::runWithFailingCalls;
using brellin::test::TempTree;

namespace {

struct Pin {
    QString name;

    bool operator==(const Pin &) const = default;
};

/// A record without which its list loses its meaning.
struct Guard {
    QString name;

    bool operator==(const Guard &) const = default;
};

} // namespace

namespace brellin {

template <>
struct JsonTable<Pin> {
    static constexpr std::tuple fields{field("name", &Pin::name)};
};

template <>
struct JsonTable<Guard> {
    static constexpr std::tuple fields{field("name", &Guard::name)};
};

template <>
inline constexpr bool recordsStandAlone<Guard> = false;

} // namespace brellin

namespace {

class StoredListTest : public ::testing::Test {
protected:
    static constexpr qint64 limit = 200;

    template <class Record>
    Result<void> append(const QString &name)
    {
        return updateList<Record>(defaults, key, [&](std::optional<std::vector<Record>> list) {
            std::vector<Record> all = std::move(list).value_or(std::vector<Record>());
            all.push_back({name});
            return std::optional(all);
        });
    }
    template <class Record>
    QString names() const
    {
        QString text;
        for (const Record &one : storedList<Record>(defaults, key).value_or({}))
            text += one.name;
        return text;
    }
    template <class Record>
    StoredState state() const
    {
        return storedList<Record>(defaults, key).state;
    }
    /// Truncates the stored file in place, as a failing disk or another program would.
    void cut(std::uintmax_t bytes) const
    {
        std::filesystem::resize_file(file, std::filesystem::file_size(file) - bytes);
    }
    /// Number of files whose names start like this.
    std::ptrdiff_t count(std::string_view start) const
    {
        return std::ranges::count_if(std::filesystem::directory_iterator(tree.path("s")), [&](const auto &entry) {
            return entry.path().filename().native().starts_with(start);
        });
    }

    const QString key = QStringLiteral("l");
    TempTree tree;
    const Location file = tree.path("s/l.json");
    FileUserDefaults defaults{tree.path("s"), {.usual = limit, .longList = 2 * limit, .longLists = {u"lang"_qs}}};
};

TEST_F(StoredListTest, TellsAbsentDamagedAndUnreadableApart)
{
    EXPECT_EQ(state<Pin>(), StoredState::Absent);
    EXPECT_TRUE(wholeList<Guard>(defaults, key, {}));
    tree.file("s/l.json", R"([{"name":"a"},{"name":7},{"name":"c"}])");
    const StoredList<Pin> pins = storedList<Pin>(defaults, key);
    EXPECT_EQ(pins.state, StoredState::Partly);
    EXPECT_EQ(pins.value_or({}), (std::vector<Pin>{{u"a"_qs}, {u"c"_qs}}));
    EXPECT_EQ(pins.lost, QStringList{u"Feld „[1].name“: hier gehört ein Text hin."_qs});
    EXPECT_EQ(state<Guard>(), StoredState::Damaged) << "one record that is missing bares what it guarded";
    EXPECT_EQ(wholeList<Guard>(defaults, key, {}).error().message,
              u"„l.json“ ist beschädigt: Feld „[1].name“: hier gehört ein Text hin."_qs);
    for (const char *const text : {"", "[{\"name\":\"a\"}", "{}", "null", "[{\"name\":7}]"}) {
        tree.file("s/l.json", text);
        EXPECT_EQ(state<Pin>(), StoredState::Damaged) << text;
    }
    tree.file("s/l.json", "[" + std::string(limit, ' ') + "]");
    EXPECT_EQ(state<Pin>(), StoredState::Unreadable);
    EXPECT_TRUE(defaults.read(key).error().is(std::errc::file_too_large));
    std::filesystem::remove(file);
    tree.folder("s/l.json");
    EXPECT_EQ(state<Pin>(), StoredState::Unreadable);
    EXPECT_FALSE(append<Pin>(u"x"_qs));
}

TEST_F(StoredListTest, AChangeOfADamagedListBeginsWithTheLastGoodVersion)
{
    ASSERT_TRUE(append<Pin>(u"a"_qs));
    ASSERT_TRUE(append<Pin>(u"b"_qs));
    cut(3);
    EXPECT_EQ(names<Pin>(), u""_qs);
    ASSERT_TRUE(append<Pin>(u"c"_qs));
    EXPECT_EQ(names<Pin>(), u"abc"_qs);
    EXPECT_EQ(count("l.beschädigt-"), 1);

    // The same where only a record of it is lost.
    tree.file("s/l.json", R"([{"name":"a"},{"name":7}])");
    ASSERT_TRUE(append<Pin>(u"d"_qs));
    EXPECT_EQ(names<Pin>(), u"abcd"_qs);
    EXPECT_EQ(count("l.beschädigt-"), 2);
    EXPECT_EQ(count("l.zuletzt-gut-"), 2);

    // Where both have lost one, the records that can still be read are kept.
    tree.file("s/l.json", R"([{"name":"a"},{"name":7}])");
    tree.file("s/l.zuletzt-gut.json", R"([{"name":7},{"name":"d"}])");
    ASSERT_TRUE(append<Pin>(u"e"_qs));
    EXPECT_EQ(names<Pin>(), u"ae"_qs);
}

TEST_F(StoredListTest, AGuardingListIsNotChangedWhileItIsDamaged)
{
    ASSERT_TRUE(append<Guard>(u"a"_qs));
    cut(1);
    const std::string before = tree.snapshot();
    EXPECT_FALSE(append<Guard>(u"b"_qs));
    EXPECT_EQ(tree.snapshot(), before);

    ASSERT_TRUE(defaults.replace(key, *defaults.readLastGood(key)));
    EXPECT_EQ(names<Guard>(), u"a"_qs);
    ASSERT_TRUE(append<Guard>(u"b"_qs));
    EXPECT_EQ(names<Guard>(), u"ab"_qs);
    EXPECT_EQ(count("l.beschädigt-"), 1);
}

TEST_F(StoredListTest, ReplacesWhatCannotEvenBeReadAndKeepsItAside)
{
    ASSERT_TRUE(append<Pin>(u"a"_qs));
    std::filesystem::remove(file);
    tree.file("s/l.json/innen", "bleibt");
    ASSERT_TRUE(defaults.replace(key, std::nullopt));
    EXPECT_EQ(state<Pin>(), StoredState::Absent);
    EXPECT_EQ(defaults.readLastGood(key).value(), std::nullopt);
    EXPECT_NE(tree.snapshot().find("innen"), std::string::npos);
    EXPECT_EQ(count("l.zuletzt-gut-"), 1);
}

TEST_F(StoredListTest, ALinkThatLeadsNowhereIsNotAbsent)
{
    tree.folder("s");
    std::filesystem::create_symlink(tree.path("platte/l.json"), file);
    EXPECT_EQ(state<Pin>(), StoredState::Unreadable);
    EXPECT_FALSE(append<Pin>(u"x"_qs));
    // The same where the whole folder is on a disk that is not mounted.
    std::filesystem::create_symlink(tree.path("platte"), tree.path("config"));
    const FileUserDefaults elsewhere(tree.path("config/programm"));
    const StoredList<Pin> list = storedList<Pin>(elsewhere, key);
    EXPECT_EQ(list.state, StoredState::Unreadable);
    EXPECT_TRUE(list.lost.join(u' ').contains(u"„config“"_qs)) << list.lost.join(u' ').toStdString();
    tree.folder("platte");
    EXPECT_EQ(storedList<Pin>(elsewhere, key).state, StoredState::Absent);
}

TEST_F(StoredListTest, WritesNothingThatItWouldNotRead)
{
    ASSERT_TRUE(append<Pin>(u"a"_qs));
    const Result<void> stored = append<Pin>(QString(limit, u'x'));
    ASSERT_FALSE(stored);
    EXPECT_TRUE(stored.error().is(std::errc::file_too_large));
    EXPECT_EQ(names<Pin>(), u"a"_qs);
    const QByteArray text(limit + 1, ' ');
    EXPECT_TRUE(defaults.update(u"lang"_qs, [&](const auto &) { return UserDefaults::Change{text}; }));
    EXPECT_EQ(defaults.json(u"lang"_qs), text);
}

TEST_F(StoredListTest, DamagedSettingsComeBackWithTheNextOne)
{
    ASSERT_TRUE(defaults.setValue(u"zahl"_qs, 7));
    tree.file("s/settings.json", "{\"zahl\":");
    EXPECT_FALSE(defaults.value(u"zahl"_qs));
    ASSERT_TRUE(defaults.setValue(u"text"_qs, u"neu"_qs));
    EXPECT_EQ(defaults.value(u"zahl"_qs)->toInt(), 7);
    EXPECT_EQ(defaults.value(u"text"_qs)->toString(), u"neu"_qs);
}

TEST_F(StoredListTest, AFullDiskWithoutLinksLosesNeitherTheListNorItsLastGoodVersion)
{
    tree.folder("s");
    const PrivateMount disk(tree.path("s"), "tmpfs", "size=256k");
    if (!disk)
        GTEST_SKIP() << "needs root";
    ASSERT_TRUE(append<Guard>(u"a"_qs));
    cut(1);
    disk.leaveFree(0, "voll");
    const auto restore = [&] { EXPECT_FALSE(restoreLastGood(defaults, storedKind<Guard>(key))); };
    const auto noLinks = [](int) { return EPERM; };
    std::string before = tree.snapshot();
    if (!runWithFailingCalls(SYS_link, noLinks, restore))
        GTEST_SKIP() << "no calls can be made to fail";
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_EQ(state<Guard>(), StoredState::Damaged);

    // A file that cannot be copied is renamed aside, and renamed back.
    std::filesystem::remove(file);
    tree.file("s/l.json/innen", "");
    disk.leaveFree(0, "noch voller");
    before = tree.snapshot();
    ASSERT_TRUE(runWithFailingCalls(SYS_link, noLinks, restore));
    EXPECT_EQ(tree.snapshot(), before);

    std::filesystem::remove_all(file);
    std::filesystem::remove(tree.path("s/voll"));
    tree.file("s/l.json", "[{");
    ASSERT_TRUE(runWithFailingCalls(SYS_link, noLinks,
                                    [&] { EXPECT_TRUE(restoreLastGood(defaults, storedKind<Guard>(key))); }));
    EXPECT_EQ(names<Guard>(), u"a"_qs);
    EXPECT_EQ(count("l.beschädigt-"), 1);
}

TEST_F(StoredListTest, AListThatIsMissingBesideItsLastGoodVersionIsNotAbsent)
{
    ASSERT_TRUE(append<Guard>(u"a"_qs));
    std::filesystem::remove(file);
    EXPECT_EQ(state<Guard>(), StoredState::Damaged);
    EXPECT_FALSE(append<Guard>(u"b"_qs));
    ASSERT_TRUE(restoreLastGood(defaults, storedKind<Guard>(key)));
    EXPECT_EQ(names<Guard>(), u"a"_qs);

    std::filesystem::remove(file);
    ASSERT_TRUE(append<Pin>(u"b"_qs)) << "where each record stands alone, it goes on with them";
    EXPECT_EQ(names<Pin>(), u"ab"_qs);

    std::filesystem::remove(file);
    ASSERT_TRUE(beginAnew(defaults, storedKind<Guard>(key)));
    EXPECT_EQ(state<Guard>(), StoredState::Absent);
    EXPECT_EQ(count("l.zuletzt-gut-"), 3);
}

TEST_F(StoredListTest, AFirstWriteThatFailsLeavesTheListAbsent)
{
    tree.folder("s");
    const PrivateMount disk(tree.path("s"), "tmpfs", "size=256k");
    if (!disk)
        GTEST_SKIP() << "needs root";
    disk.leaveFree(4096, "voll"); // room for one of the two files
    const bool stored = append<Guard>(u"a"_qs).has_value();
    EXPECT_EQ(state<Guard>(), stored ? StoredState::Whole : StoredState::Absent);
    EXPECT_EQ(names<Guard>(), stored ? u"a"_qs : u""_qs);
}

} // namespace

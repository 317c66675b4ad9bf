#include "Sidebar/Pins.h"

#include "Support/TempTree.h"
#include "System/MemoryUserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace brellin;
using brellin::test::TempTree;

namespace {

class PinsTest : public testing::Test {
protected:
    PinsTest()
    {
        ::setenv("HOME", tree.root().c_str(), 1);
        folders = KnownFolders::ofThisUser();
        folders.applications.reset();
    }
    static void store(UserDefaults &settings, const QByteArray &json)
    {
        ASSERT_TRUE(settings.update(Pins::key, [&](const auto &) { return UserDefaults::Change{json, false}; }));
    }
    static QStringList names(const Pins &pins)
    {
        QStringList list;
        for (const QuickEntry &entry : pins.entries.get())
            list += entry.name;
        return list;
    }
    QStringList storedNames() const
    {
        QStringList list;
        for (const QJsonValue entry : QJsonDocument::fromJson(defaults.json(Pins::key).value_or("[]")).array())
            list += entry.toObject().value(QStringLiteral("name")).toString();
        return list;
    }
    static QUuid idOf(const Pins &pins, std::size_t index) { return pins.entries.get().at(index).id; }

    TempTree tree;
    MemoryUserDefaults defaults;
    KnownFolders folders;
};

} // namespace

TEST_F(PinsTest, startWithTheUsualFoldersAndStoreNothingBeforeAChange)
{
    const Pins pins(defaults, folders);
    EXPECT_EQ(names(pins),
              (QStringList{u"Eigene Dateien"_qs, u"Schreibtisch"_qs, u"Downloads"_qs, u"Fotos-Mediathek"_qs}));
    EXPECT_EQ(pins.folders(),
              (std::vector<Location>{tree.path("Documents"), tree.path("Desktop"), tree.path("Downloads")}));
    EXPECT_FALSE(defaults.json(Pins::key));

    folders.iCloud = tree.path("cloud");
    folders.eigeneDateien = tree.path("cloud/Eigene Dateien");
    folders.applications = "/Applications";
    const Pins onMac(defaults, folders);
    EXPECT_EQ(names(onMac), (QStringList{u"iCloud Drive"_qs, u"Eigene Dateien"_qs, u"Schreibtisch"_qs, u"Downloads"_qs,
                                         u"Programme"_qs, u"Fotos-Mediathek"_qs}));
    EXPECT_EQ(onMac.entries.get()[1].path, tree.path("cloud/Eigene Dateien"));
}

TEST_F(PinsTest, takeOverTheOlderListOnceAndSurviveGarbage)
{
    struct Row {
        const char *quickAccess;
        bool older;
        QStringList expected;
    };
    const std::vector<Row> rows{{nullptr, true, {u"zwei"_qs, u"eins"_qs}},
                                {"{kaputt", true, {u"zwei"_qs, u"eins"_qs}},
                                {"[{\"name\":7}]", false, {}},
                                {"[]", true, {}},
                                {R"([{"name":"Mein","path":"/x"}])", true, {u"Mein"_qs}}};
    for (const Row &row : rows) {
        MemoryUserDefaults settings;
        if (row.quickAccess)
            store(settings, row.quickAccess);
        if (row.older) {
            ASSERT_TRUE(settings.setValue(QStringLiteral("pinnedFolders"), QStringList{u"/a/zwei"_qs, u"/a/eins"_qs}));
        }
        Pins pins(settings, folders);
        if (!row.older) {
            EXPECT_EQ(names(pins).size(), 4) << "the usual entries, without an error";
            continue;
        }
        EXPECT_EQ(names(pins), row.expected);
        ASSERT_TRUE(settings.setValue(QStringLiteral("pinnedFolders"), QStringList{u"/anders"_qs}));
        EXPECT_EQ(names(Pins(settings, folders)), row.expected) << "from now on only the new list";
    }
}

TEST_F(PinsTest, anEmptyOlderListStaysEmpty)
{
    for (const QVariant &none : {QVariant(QStringList()), QVariant(QVariantList())}) {
        MemoryUserDefaults settings;
        ASSERT_TRUE(settings.setValue(QStringLiteral("pinnedFolders"), none));
        EXPECT_TRUE(Pins(settings, folders).entries.get().empty());
        EXPECT_TRUE(Pins(settings, folders).entries.get().empty()) << "also at the next start";
    }
    MemoryUserDefaults json;
    ASSERT_TRUE(json.update(QStringLiteral("pinnedFolders"), [](const auto &) { return UserDefaults::Change{"[]"}; }));
    EXPECT_TRUE(Pins(json, folders).entries.get().empty());
    MemoryUserDefaults text;
    ASSERT_TRUE(text.setValue(QStringLiteral("pinnedFolders"), QStringLiteral("")));
    EXPECT_EQ(Pins(text, folders).entries.get().size(), 4U) << "what is no list counts as absent";
}

TEST_F(PinsTest, everyChangeIsStoredAtOnce)
{
    store(defaults, "[]");
    Pins pins(defaults, folders);
    for (const char *name : {"/p/a", "/p/b", "/p/c"})
        ASSERT_TRUE(pins.toggle(name));
    ASSERT_TRUE(pins.toggle("/p/b/../b/"));
    EXPECT_EQ(storedNames(), (QStringList{u"a"_qs, u"c"_qs})) << "pinning what is pinned unpins it";
    ASSERT_TRUE(pins.toggle("/p/b"));
    ASSERT_TRUE(pins.moveUp(idOf(pins, 0)));
    ASSERT_TRUE(pins.moveDown(idOf(pins, 2)));
    EXPECT_EQ(storedNames(), (QStringList{u"a"_qs, u"c"_qs, u"b"_qs})) << "nothing at the ends";
    ASSERT_TRUE(pins.moveUp(idOf(pins, 2)));
    ASSERT_TRUE(pins.moveTo(idOf(pins, 0), 3));
    EXPECT_EQ(storedNames(), (QStringList{u"b"_qs, u"c"_qs, u"a"_qs}));
    ASSERT_TRUE(pins.moveTo(idOf(pins, 2), 1));
    ASSERT_TRUE(pins.moveTo(idOf(pins, 0), 1));
    EXPECT_EQ(storedNames(), (QStringList{u"b"_qs, u"a"_qs, u"c"_qs}))
        << "in front of itself or the next is where it is";
    ASSERT_TRUE(pins.rename(idOf(pins, 0), QStringLiteral("  Bilder ")));
    ASSERT_TRUE(pins.rename(idOf(pins, 0), QStringLiteral(" ")));
    EXPECT_EQ(pins.entries.get()[0].path, "/p/b");
    ASSERT_TRUE(pins.setColor(idOf(pins, 0), QStringLiteral("Rot")));
    ASSERT_TRUE(pins.setImage(idOf(pins, 0), Location("/bild\xE9.png")));
    ASSERT_TRUE(pins.setSymbol(idOf(pins, 0), QStringLiteral("star")));
    ASSERT_TRUE(pins.remove(idOf(pins, 1)));
    EXPECT_EQ(Pins(defaults, folders).entries.get(), pins.entries.get());
    EXPECT_EQ(storedNames(), (QStringList{u"Bilder"_qs, u"c"_qs}));
}

TEST_F(PinsTest, aChangeIsMadeOnWhatAnotherProgramStored)
{
    Pins one(defaults, folders);
    Pins other(defaults, folders);
    ASSERT_TRUE(one.toggle("/eins"));
    ASSERT_TRUE(other.toggle("/zwei"));
    EXPECT_TRUE(other.holds("/eins") && other.holds("/zwei"));
    one.reload();
    EXPECT_EQ(one.entries.get(), other.entries.get());
}

TEST_F(PinsTest, whatCannotBeStoredDoesNotHappen)
{
    class Full : public MemoryUserDefaults {
    public:
        Result<void> update(const QString &,
                            const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &) override
        {
            return failure(Failure::system(ENOSPC));
        }
    } full;
    Pins pins(full, folders);
    const auto before = pins.entries.get();
    EXPECT_FALSE(pins.toggle("/eins"));
    EXPECT_EQ(pins.entries.get(), before);
}

TEST_F(PinsTest, aFolderStoredWithAClosingSlashIsThatFolder)
{
    store(defaults, R"([{"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","name":"Mein","path":"/p/mein/"}])");
    Pins pins(defaults, folders);
    EXPECT_TRUE(pins.holds("/p/mein"));
    EXPECT_EQ(pins.folders(), std::vector<Location>{"/p/mein"});
    ASSERT_TRUE(pins.pin("/p/mein"));
    EXPECT_EQ(names(pins).size(), 1) << "it is pinned already";
    ASSERT_TRUE(pins.toggle("/p/mein/"));
    EXPECT_EQ(storedNames(), QStringList());
}

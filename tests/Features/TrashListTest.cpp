#include "Features/TrashList.h"

#include "Disk/SystemTrash.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A folder of the test acts as a second volume.
class WithStick : public SystemVolumes {
public:
    explicit WithStick(Location top) : m_stick(std::move(top)) {}
    std::vector<Volume> mounted() const override { return {{m_stick, QStringLiteral("Stick"), {}, true, false}}; }
    Result<Location> top(const Location &location) const override
    {
        return isAtOrBelow(location, m_stick) ? Result<Location>(m_stick) : SystemVolumes::top(location);
    }

private:
    const Location m_stick;
};

class TrashListTest : public testing::Test {
protected:
    Location put(const char *name) { return trash.put(tree.path(name)).value(); }
    void refresh()
    {
        list.refresh();
        ASSERT_TRUE(waitUntil([&] {
            return !list.loading.get() &&
                   std::ranges::all_of(list.items.get(), [](const TrashItem &item) { return item.size.has_value(); });
        }));
    }
    const TrashItem *item(const char *original) const
    {
        const auto found = std::ranges::find(list.items.get(), tree.path(original),
                                             [](const TrashItem &one) { return one.entry.original; });
        return found == list.items.get().end() ? nullptr : &*found;
    }
    TrashReturn putBack(const std::vector<Location> &places)
    {
        std::optional<TrashReturn> outcome;
        list.putBack(places, &receiver, [&](const TrashReturn &done) { outcome = done; });
        EXPECT_TRUE(waitUntil([&] { return outcome.has_value(); }));
        return outcome.value_or(TrashReturn());
    }
    /// Creates an entry with this record in the stick's own Trash.
    Location onStick(const std::string &name, const std::string &record)
    {
        const std::string trashFolder = "stick/.Trash-" + std::to_string(::geteuid());
        tree.file(trashFolder + "/info/" + name + ".trashinfo", record);
        return tree.file(trashFolder + "/files/" + name, "1234");
    }

    TempTree tree;
    WithStick volumes{tree.folder("stick")};
    SystemTrash trash{tree.path("daten/Trash"), volumes};
    DiskFileActions files;
    QObject receiver;
    TrashList list{tree.path("daten/Trash"), volumes, trash, files};
};

} // namespace

TEST_F(TrashListTest, listsEveryVolumeWithOriginDateAndSize)
{
    tree.lines({"a/brief.txt=12345", "a/Ordner/tief/x=123", "a/b\xFC=1"});
    put("a/brief.txt");
    put("a/Ordner");
    put("a/b\xFC");
    onStick("foto.jpg", "[Trash Info]\nPath=Bilder/foto.jpg\nDeletionDate=2001-02-03T04:05:06\n");
    tree.file("daten/Trash/files/waise", "12");
    refresh();
    ASSERT_EQ(list.items.get().size(), 5U);
    EXPECT_EQ(item("a/brief.txt")->size, 5);
    EXPECT_TRUE(item("a/brief.txt")->entry.deleted);
    EXPECT_TRUE(item("a/Ordner")->folder);
    EXPECT_EQ(item("a/Ordner")->size, 3);
    EXPECT_TRUE(item("a/b\xFC"));
    const TrashItem *const photo = item("stick/Bilder/foto.jpg");
    ASSERT_TRUE(photo);
    EXPECT_EQ(isoText(*photo->entry.deleted), QStringLiteral("2001-02-03T03:05:06Z"));
    EXPECT_EQ(list.items.get().back().name, QStringLiteral("waise")) << "what nobody knows anything of comes last";
    EXPECT_TRUE(list.items.get().back().entry.original.empty());
}

TEST_F(TrashListTest, putsBackWithMissingFoldersAndNeverReplaces)
{
    tree.lines({"a/tief/x=eins", "b=alt", "c=weg"});
    const std::vector<Location> places{put("a/tief/x"), put("a"), put("b"), put("c")};
    tree.file("b", "neu");
    const std::string before = tree.snapshot();
    refresh();
    const TrashReturn outcome = putBack(places);
    // The folder was restored before the entry from inside it.
    EXPECT_EQ(outcome.returned,
              (std::vector<EntryMove>{
                  {places[1], tree.path("a")}, {places[3], tree.path("c")}, {places[0], tree.path("a/tief/x")}}));
    EXPECT_EQ(linesOf(outcome.failures), QStringList{u"b: Am alten Ort gibt es schon etwas mit diesem Namen."_qs});
    EXPECT_EQ(tree.content("b"), "neu");
    EXPECT_EQ(tree.content("a/tief/x"), "eins");
    ASSERT_TRUE(waitUntil([&] { return list.items.get().size() == 1; }));
    EXPECT_TRUE(item("b"));
    EXPECT_NE(tree.snapshot(), before);
}

TEST_F(TrashListTest, putsManyBackInTheOrderOfTheList)
{
    std::vector<Location> places;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "brief " + std::to_string(i * 17 % 40);
        tree.file(name, "x");
        places.push_back(put(name.c_str()));
    }
    refresh();
    std::vector<EntryMove> origins;
    for (const TrashItem &one : list.items.get())
        origins.push_back({one.entry.place, one.entry.original});
    EXPECT_EQ(origins.size(), places.size());
    EXPECT_EQ(putBack(places).returned, origins);
}

TEST_F(TrashListTest, makesFoldersOnlyForWhatComesBack)
{
    tree.lines({"weg/tief/x=eins", "weg/tief/y=zwei"});
    const std::vector<Location> places{put("weg/tief/x"), put("weg/tief/y")};
    std::filesystem::remove_all(tree.path("weg"));
    refresh();
    // The entry itself has disappeared from the Trash.
    std::filesystem::remove(places[0]);
    EXPECT_EQ(putBack({places[0]}).failures.size(), 1);
    EXPECT_FALSE(tree.has("weg"));
    EXPECT_EQ(putBack({places[1]}).returned, (std::vector<EntryMove>{{places[1], tree.path("weg/tief/y")}}));
    EXPECT_EQ(tree.content("weg/tief/y"), "zwei");
}

TEST_F(TrashListTest, aForeignRecordLeadsNowhereOutsideItsVolume)
{
    const Location up = onStick("boese", "[Trash Info]\nPath=../ausserhalb\nDeletionDate=2001-02-03T04:05:06\n");
    const Location absolute = onStick("boese2", "[Trash Info]\nPath=" + tree.path("ausserhalb").native() + "\n");
    const Location fine = onStick("gut", "[Trash Info]\nPath=" + tree.path("stick/gut").native() + "\n");
    refresh();
    const TrashReturn outcome = putBack({up, absolute, fine});
    EXPECT_EQ(outcome.failures.size(), 2);
    EXPECT_EQ(outcome.returned, (std::vector<EntryMove>{{fine, tree.path("stick/gut")}}));
    EXPECT_FALSE(tree.has("ausserhalb"));
}

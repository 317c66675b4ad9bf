#include "ContentView/ItemOrder.h"

#include "ContentView/BrowserWorld.h"

#include <gtest/gtest.h>

#include <map>

using namespace brellin;
using namespace brellin::test;

namespace {

/// "name", "name=size" or "name/" for a folder.
FileItems itemsOf(const std::vector<std::string> &lines)
{
    const auto folder = std::make_shared<const std::string>("/f");
    std::vector<FileItem> items;
    for (const std::string &line : lines) {
        FileItem item;
        const std::size_t equals = line.find('=');
        item.folder = folder;
        item.isFolder = line.ends_with('/');
        item.nameBytes = item.isFolder ? line.substr(0, line.size() - 1) : line.substr(0, equals);
        item.size = equals == std::string::npos ? 0 : std::stoll(line.substr(equals + 1));
        items.push_back(item);
    }
    return FileItems(std::move(items));
}

SortOrder by(SortKey key, SortDirection direction = SortDirection::Ascending)
{
    return {SortComparator{key, direction}};
}

/// "Title: name name | Title: name"
std::string groupsIn(const DisplayedItems &rows)
{
    std::string text;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto heading = std::ranges::find(rows.groups(), row, &RowGroup::first);
        if (heading != rows.groups().end())
            text += (row > 0 ? " | " : "") + heading->title.toStdString() + ":";
        text += " " + rows[row].nameBytes;
    }
    return text;
}

FileItems datedItems(const std::vector<std::pair<std::string, QDate>> &days)
{
    std::vector<FileItem> items;
    for (const auto &[name, day] : days) {
        FileItem item;
        item.folder = std::make_shared<const std::string>("/f");
        item.nameBytes = name;
        if (day.isValid())
            item.modified = instantFromMilliseconds(QDateTime(day, QTime(12, 0)).toMSecsSinceEpoch());
        items.push_back(item);
    }
    return FileItems(std::move(items));
}

} // namespace

TEST(ItemOrderTest, sortsNamesAsGermansAndNumbersWantIt)
{
    const FileItems items = itemsOf({"file10", "File2", "Zebra", "Äpfel", "apfel", "ordner/", "b/", "file2a"});
    EXPECT_EQ(rowNames(displayed(items, {})), "b ordner apfel Äpfel File2 file2a file10 Zebra");
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Name, SortDirection::Descending)})),
              "ordner b Zebra file10 file2a File2 Äpfel apfel");
    EXPECT_EQ(rowNames(displayed(items, {.filter = [](const FileItem &item) { return item.isFolder; }})), "b ordner");
}

TEST(ItemOrderTest, sortsBySizeWithWhatIsKnownOfFoldersAndFoldersFirst)
{
    const FileItems items = itemsOf({"klein=1", "gross=900", "leer=0", "A/", "B/", "C/"});
    const std::map<std::string, std::int64_t> known{{"A", 5}, {"B", 700}};
    const auto size = [&](const FileItem &item) {
        const auto found = known.find(item.nameBytes);
        return found == known.end() ? std::nullopt : std::optional(found->second);
    };
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Size, SortDirection::Descending), .folderSize = size})),
              "B A C gross klein leer");
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Size), .folderSize = size})), "C A B leer klein gross");
}

TEST(ItemOrderTest, letsTheNextComparatorDecideWhereOneSeesNoDifference)
{
    const FileItems items = itemsOf({"b=1", "a=1", "c=2", "B=1"});
    EXPECT_EQ(rowNames(displayed(items, {.order = {{SortKey::Size, SortDirection::Descending},
                                                   {SortKey::Name, SortDirection::Ascending}}})),
              "c a b B");
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Size)})), "b a B c") << "stable";
    EXPECT_EQ(rowNames(displayed(items, {.order = {}})), "b a c B");
}

/// Uses more than sixteen rows, since std::sort is stable for fewer.
TEST(ItemOrderTest, leavesEqualRowsOfALongListAsTheyStand)
{
    std::vector<std::string> lines;
    std::string expected;
    for (int i = 0; i < 200; ++i) {
        const std::string name = std::to_string(i * 37 % 200);
        lines.push_back(name + "=1");
        expected += (i > 0 ? " " : "") + name;
    }
    const FileItems items = itemsOf(lines);
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Size)})), expected);
    EXPECT_EQ(rowNames(displayed(items, {.order = by(SortKey::Size, SortDirection::Descending)})), expected);
}

TEST(ItemOrderTest, choosesTheLargestAndNewestFirstAndReverses)
{
    using enum SortDirection;
    const SortOrder name = orderBy(SortKey::Name, Ascending);
    EXPECT_EQ(chosenOrder(name, SortKey::Name), orderBy(SortKey::Name, Descending));
    EXPECT_EQ(chosenOrder(name, SortKey::Modified), orderBy(SortKey::Modified, Descending));
    EXPECT_EQ(chosenOrder(name, SortKey::Kind), orderBy(SortKey::Kind, Ascending));
    const SortOrder size = chosenOrder(name, SortKey::Size);
    EXPECT_EQ(size, orderBy(SortKey::Size, Descending));
    EXPECT_EQ(chosenOrder(size, SortKey::Size), orderBy(SortKey::Size, Ascending));
    EXPECT_EQ(chosenOrder(chosenOrder(size, SortKey::Size), SortKey::Size), size);
    const SortOrder two = chosenSecond(orderBy(SortKey::Kind, Ascending), SortKey::Size);
    const SortComparator kind{SortKey::Kind, Ascending};
    EXPECT_EQ(two, (SortOrder{kind, {SortKey::Size, Descending}, {SortKey::Name, Ascending}}));
    EXPECT_EQ(chosenSecond(two, SortKey::Size).at(1).direction, Ascending);
    EXPECT_EQ(chosenSecond(two, SortKey::Kind), orderBy(SortKey::Kind, Descending)) << "it is the first already";
    EXPECT_EQ(chosenSecond(orderBy(SortKey::Kind, Ascending), SortKey::Name),
              (SortOrder{kind, {SortKey::Name, Descending}}));
}

TEST(ItemOrderTest, groupsFilesBelowTheFolders)
{
    const FileItems items = itemsOf(
        {"klein=1", "Riese=2000000000", "leer=0", "b/", "mittel=5000000", "A/", "gross=1000000000", "viel=999999"});
    EXPECT_EQ(groupsIn(displayed(items, {.group = GroupKey::Size})),
              "Ordner: A b | Ab 1 GB: gross Riese | 1 MB bis 100 MB: mittel | "
              "Unter 1 MB: klein viel | Leer: leer");
    EXPECT_EQ(groupsIn(displayed(items, {.order = by(SortKey::Size), .group = GroupKey::Size})),
              "Ordner: b A | Leer: leer | Unter 1 MB: klein viel | 1 MB bis 100 "
              "MB: mittel | Ab 1 GB: gross Riese");
    EXPECT_EQ(groupsIn(displayed(
                  items, {.filter = [](const FileItem &item) { return item.size == 1; }, .group = GroupKey::Size})),
              "Unter 1 MB: klein");
    const DisplayedItems plain = displayed(itemsOf({"a=1", "b=1"}), {});
    EXPECT_EQ(groupsIn(plain), " a b");
    EXPECT_FALSE(plain.hasSameRows(displayed(plain.items(), {.group = GroupKey::Size})));
}

TEST(ItemOrderTest, groupsByDatesTagsAndKinds)
{
    const QDate today(2026, 9, 20);
    const FileItems dated = datedItems({{"morgen", today.addDays(1)},
                                        {"heute", today},
                                        {"gestern", today.addDays(-1)},
                                        {"woche", today.addDays(-7)},
                                        {"monat", today.addDays(-30)},
                                        {"august", QDate(2026, 8, 1)},
                                        {"jan", QDate(2026, 1, 1)},
                                        {"dez", QDate(2025, 12, 31)},
                                        {"ohne", {}}});
    const DisplayOptions newest{.order = by(SortKey::Name), .group = GroupKey::Modified, .today = today};
    EXPECT_EQ(groupsIn(displayed(dated, newest)),
              "Zukünftig: morgen | Heute: heute | Gestern: gestern | Letzte 7 Tage: "
              "woche | Letzte 30 Tage: monat | "
              "August 2026: august | Januar 2026: jan | 2025: dez | Ohne Datum: ohne");

    std::vector<FileItem> list;
    for (const auto &[name, tags] :
         std::vector<std::pair<std::string, QStringList>>{{"a.pdf", {}},
                                                          {"b.txt", {u"Zoo"_qs}},
                                                          {"c.pdf", {u"Zoo"_qs, u"Grau"_qs, u"Rot"_qs}},
                                                          {"d.pdf", {u"Amt"_qs}}}) {
        FileItem item = itemsOf({name})[0];
        item.tags = tags;
        item.kind = kindOfFile(name);
        list.push_back(item);
    }
    const FileItems items(std::move(list));
    EXPECT_EQ(groupsIn(displayed(items, {.group = GroupKey::Tags})),
              "Rot: c.pdf | Amt: d.pdf | Zoo: b.txt | Ohne Markierung: a.pdf");
    EXPECT_EQ(
        groupsIn(displayed(items, {.order = by(SortKey::Kind, SortDirection::Descending), .group = GroupKey::Kind})),
        "Textdokument: b.txt | PDF-Dokument: a.pdf c.pdf d.pdf");
}

#include "ContentView/ItemOrder.h"

#include "ContentView/BrowserWorld.h"
#include "ContentView/RowDifference.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

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

DisplayedItems rowsOf(const std::vector<std::string> &lines)
{
    std::vector<std::uint32_t> rows(lines.size());
    for (std::uint32_t i = 0; i < rows.size(); ++i)
        rows[i] = i;
    return {itemsOf(lines), std::move(rows)};
}

/// Does to a list of names what a view does with a difference.
std::vector<std::string> applied(const DisplayedItems &before, const DisplayedItems &after, const RowDifference &change)
{
    std::vector<std::string> rows;
    for (std::size_t row = 0; row < before.size(); ++row)
        rows.push_back(before[row].nameBytes);
    for (const RowRange &range : change.removed)
        rows.erase(rows.begin() + range.first, rows.begin() + range.first + range.count);
    if (change.reordered) {
        std::vector<std::string> moved(rows.size());
        for (std::size_t row = 0; row < rows.size(); ++row)
            moved.at(static_cast<std::size_t>(change.places.at(row))) = rows[row];
        rows = moved;
    }
    for (const RowRange &range : change.inserted) {
        for (int row = range.first; row < range.first + range.count; ++row)
            rows.insert(rows.begin() + row, after[static_cast<std::size_t>(row)].nameBytes);
    }
    return rows;
}

/// "-2*2 -0*1" for removed runs, then "+" for inserted and "~" for changed ones, and ">" for each new place.
std::string described(const RowDifference &change)
{
    std::string text;
    const auto add = [&text](char sign, const std::vector<RowRange> &ranges) {
        for (const RowRange &range : ranges)
            text += sign + std::to_string(range.first) + '*' + std::to_string(range.count) + ' ';
    };
    add('-', change.removed);
    add('+', change.inserted);
    add('~', change.changed);
    for (const int place : change.places)
        text += '>' + std::to_string(place) + ' ';
    return text;
}

std::vector<std::string> namesOf(const DisplayedItems &rows)
{
    std::vector<std::string> names;
    for (std::size_t row = 0; row < rows.size(); ++row)
        names.push_back(rows[row].nameBytes);
    return names;
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

TEST(RowDifferenceTest, turnsOneListIntoTheOther)
{
    struct Case {
        std::vector<std::string> before;
        std::vector<std::string> after;
        std::string expected;
    };
    const std::vector<Case> cases{
        {{"a", "b"}, {"a", "b"}, ""},
        {{}, {"a", "b"}, "+0*2 "},
        {{"a", "b", "c", "d"}, {"b"}, "-2*2 -0*1 "},
        {{"a", "c"}, {"a", "b", "c", "d"}, "+1*1 +3*1 "},
        {{"a", "b=1", "c"}, {"a", "b=2", "c=1"}, "~1*2 "},
        {{"a", "b", "c"}, {"c", "a", "b"}, ">1 >2 >0 "},
        {{"alt", "b"}, {"b", "neu"}, "-0*1 +1*1 "},
    };
    for (const Case &one : cases) {
        const DisplayedItems before = rowsOf(one.before);
        const DisplayedItems after = rowsOf(one.after);
        const RowDifference change = difference(before, after);
        EXPECT_EQ(described(change), one.expected);
        EXPECT_EQ(applied(before, after, change), namesOf(after));
    }
}

TEST(RowDifferenceTest, holdsForArbitraryLists)
{
    std::mt19937 random(7);
    const auto list = [&random] {
        std::vector<std::string> names;
        for (int i = 0; i < 12; ++i) {
            if (random() % 2 == 0)
                names.push_back(std::string(1, static_cast<char>('a' + i)) + "=" + std::to_string(random() % 2));
        }
        if (random() % 3 == 0)
            std::ranges::shuffle(names, random);
        return names;
    };
    for (int round = 0; round < 500; ++round) {
        const DisplayedItems before = rowsOf(list());
        const DisplayedItems after = rowsOf(list());
        ASSERT_EQ(applied(before, after, difference(before, after)), namesOf(after));
    }
}

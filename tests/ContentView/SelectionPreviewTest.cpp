#include "ContentView/SelectionPreview.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

FileItem itemNamed(const std::string &name, const QString &kind, std::int64_t size)
{
    FileItem item;
    item.folder = std::make_shared<const std::string>("/d");
    item.nameBytes = name;
    item.kind = kind;
    item.isFolder = kind == QStringLiteral("Ordner");
    item.size = size;
    return item;
}

} // namespace

TEST(SelectionPreviewTest, countsKindsAndSizesOfTheSelectedRows)
{
    const FileItems items(
        {itemNamed("c.png", QStringLiteral("PNG-Bild"), 3),                                                //
         itemNamed("a.png", QStringLiteral("PNG-Bild"), 4), itemNamed("b.txt", QStringLiteral("Text"), 5), //
         itemNamed("weit", QStringLiteral("Ordner"), 0), itemNamed("nah", QStringLiteral("Ordner"), 0),
         itemNamed("nicht.png", QStringLiteral("PNG-Bild"), 900)});
    Selection selected({"/d/a.png", "/d/b.txt", "/d/c.png", "/d/nah"});
    const auto size = [](const FileItem &folder) {
        return folder.nameBytes == "nah" ? std::optional<std::int64_t>(1000) : std::nullopt;
    };
    const DisplayedItems rows = displayed(items, {});
    PreviewSummary summary = previewOfSelection(rows, selected, size);
    EXPECT_EQ(summary.count, 4U);
    EXPECT_EQ(summarySize(summary), QStringLiteral("1 KB"));
    ASSERT_EQ(summary.onTop.size(), PreviewSummary::mostOnTop);
    EXPECT_EQ(summary.onTop[0].entry, "/d/nah") << "as displayed, folders first";
    EXPECT_EQ(summary.onTop[1].entry, "/d/a.png");
    const std::vector<PreviewFact> facts = summaryFacts(summary);
    ASSERT_EQ(facts.size(), 3U);
    EXPECT_EQ(facts[0].label + facts[0].value, QStringLiteral("PNG-Bild2"));
    EXPECT_EQ(facts[1].label + facts[1].value, QStringLiteral("Ordner1"));

    selected.insert(Location("/d/weit"));
    summary = previewOfSelection(rows, selected, size);
    EXPECT_EQ(summarySize(summary), QStringLiteral("mindestens 1 KB"));
    summary.kinds.clear();
    for (std::size_t kind = 0; kind < 8; ++kind)
        summary.kinds.emplace_back(QString::number(kind), 10 - kind);
    EXPECT_EQ(summaryFacts(summary).size(), 6U);
    EXPECT_EQ(summaryFacts(summary).back().value, QStringLiteral("12")) << "5 + 4 + 3";
}

#include "ContentView/ContentSearch.h"

#include "ContentView/FolderSearch.h"
#include "Support/ClosedFolders.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;

namespace {

const QString wanted = QStringLiteral("überweisung");

/// Bytes of a text in UTF-16.
std::string utf16(const std::u16string &text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const auto low = static_cast<char>(unit & 0xFF);
        const auto high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

/// What the decoder answers about pages from one on.
QByteArray pagesJson(int all, const QByteArray &texts)
{
    return "{\"pages\":" + QByteArray::number(all) + ",\"texts\":[" + texts + "]}";
}

class ContentSearchTest : public testing::Test {
protected:
    QString found(const Location &file, const QString &text = wanted)
    {
        const Result<ContentAnswer> answer = ContentSearch(text, &decoder).find(file, &control);
        return answer ? answer->passage : u"! "_qs + answer.error().message;
    }
    FolderSearchResult search(const QString &text)
    {
        return searchFolder({tree.root(), text, HiddenEntries::LeftOut, {{}, true}}, &control, &decoder);
    }

    const TempTree tree;
    FakeDecoder decoder;
    JobControl control;
};

} // namespace

TEST_F(ContentSearchTest, readsTextInAnyFormAndShowsItsLine)
{
    const std::u16string text = u"Erste Zeile\r\nDie ÜBERWEISUNG kommt\r\n";
    const Location files[] = {
        tree.file("utf8.txt", "Erste Zeile\nDie Überweisung kommt"),
        tree.file("zerlegt.txt", "Erste Zeile\nDie U\u0308berweisung kommt\n"),
        tree.file("latin1", "Erste Zeile\nDie \xDC"
                            "berweisung kommt\n"),
        tree.file("marke.csv", "\xEF\xBB\xBF"
                               "Erste Zeile\nDie Überweisung kommt\n"),
        tree.file("le.txt", utf16(u"\uFEFF" + text, false)),
        tree.file("be.txt", utf16(u"\uFEFF" + text, true)),
        tree.file("ohne.txt", utf16(text, false)),
    };
    for (const Location &file : files) {
        EXPECT_EQ(folded(found(file)), folded(u"Zeile 2: Die Überweisung kommt"_qs)) << file;
        EXPECT_EQ(found(file, u"U\u0308BERweisung K"_qs), found(file)) << file;
        EXPECT_EQ(found(file, u"uberweisung"_qs), QString()) << file;
    }
    const Location page =
        tree.file("lang.html", std::string(300, 'x') + " Wort davor, die Überweisung " + std::string(300, 'y'));
    EXPECT_TRUE(found(page).startsWith(u"Zeile 1: …Wort davor, die Überweisung yyy"_qs)) << found(page).toStdString();
    EXPECT_TRUE(found(page).endsWith(u"y…"_qs));
}

TEST_F(ContentSearchTest, findsWhatLiesAcrossThePiecesItReads)
{
    for (const std::size_t border : {16 * 1024, 64 * 1024, 272 * 1024}) {
        for (std::size_t shift = 0; shift < 16; ++shift) {
            const std::string before(border - shift, shift % 2 == 0 ? 'x' : '\n');
            EXPECT_FALSE(found(tree.file("datei", before + "Überweisung" + std::string(70'000, 'y'))).isEmpty())
                << border << ' ' << shift;
        }
    }
}

TEST_F(ContentSearchTest, opensNothingButFilesOfTheFolder)
{
    const TempTree outside;
    outside.file("aussen.txt", "Überweisung");
    std::filesystem::create_symlink(outside.path("aussen.txt"), tree.path("verweis.txt"));
    std::filesystem::create_directory_symlink(outside.root(), tree.path("ordnerverweis"));
    ASSERT_EQ(::mkfifo(tree.path("leitung.txt").c_str(), 0600), 0);
    tree.file("bild.png", "Überweisung");
    tree.file("programm", std::string("\x7F"
                                      "ELF\0\0Überweisung",
                                      18));
    const FolderSearchResult result = search(wanted);
    EXPECT_EQ(result.items.size(), 0u);
    EXPECT_TRUE(result.gaps.empty()) << gapsText(result.gaps).toStdString();
    EXPECT_TRUE(decoder.asked().empty());
    EXPECT_FALSE(ContentSearch(wanted, &decoder).find(tree.path("verweis.txt"), &control).has_value());
    EXPECT_EQ(found(tree.path("leitung.txt")), QString());
}

TEST_F(ContentSearchTest, searchesAtMostTheBeginningOfAHugeFile)
{
    std::string line(1023, 'x');
    line += '\n';
    const Location file = tree.path("protokoll.log");
    std::ofstream stream(file);
    for (int i = 0; i < 64 * 1024; ++i)
        stream << line;
    stream << "Überweisung\n" << std::flush;
    const FolderSearchResult result = search(wanted);
    EXPECT_EQ(result.items.size(), 0u);
    EXPECT_EQ(result.gaps.cut, std::vector{file});
    EXPECT_EQ(gapsText(result.gaps), u"1 Datei nur zum Teil durchsucht"_qs);
    // 4 GB of nothing is no text.
    std::filesystem::resize_file(tree.file("luecke.txt"), std::uintmax_t(4) << 30);
    EXPECT_EQ(found(tree.path("luecke.txt")), QString());
    control.cancel();
    const auto cancelled = ContentSearch(wanted, &decoder).find(file, &control);
    ASSERT_FALSE(cancelled);
    EXPECT_TRUE(cancelled.error().isCancelled());
}

TEST_F(ContentSearchTest, asksTheDecoderForThePagesOfAPdf)
{
    const Location pdf = tree.file("brief.PDF", "%PDF");
    const auto answer = [&](const QByteArray &json) { decoder.answers.insert_or_assign(decoderWords::pdfPages, json); };
    answer(pagesJson(2, R"("Anfang","Die Über\u0002\r\nweisung\r\nkommt morgen")"));
    EXPECT_EQ(found(pdf), u"Seite 2: Die Überweisung kommt morgen"_qs);
    EXPECT_EQ(found(pdf, u"ÜBERWEISUNG KOMMT"_qs), found(pdf));
    // Two pages at a time.
    answer(pagesJson(5, R"("a","b")"));
    EXPECT_EQ(found(pdf), QString());
    EXPECT_EQ(decoder.asked().back().arguments, (std::vector<std::string>{pdf.native(), "4"}));
    // What a decoder that was taken over may say.
    for (const char *const json : {"", "[]", R"({"pages":1000000000})", R"({"pages":5,"texts":[]})"}) {
        answer(json);
        EXPECT_TRUE(found(pdf).startsWith(u'!')) << json;
    }
    answer(pagesJson(1'000'000'000, R"("a","b","c","d","e","f","g","h","i","j")"));
    EXPECT_EQ(search(wanted).gaps.cut, std::vector{pdf});
}

TEST_F(ContentSearchTest, countsWhatItCannotReadButNotWhatIsGone)
{
    tree.file("kaputt.pdf", "kein PDF");
    decoder.answers.insert_or_assign(decoderWords::pdfPages, failure(undecodable()));
    EXPECT_EQ(search(wanted).gaps.files, std::vector{tree.path("kaputt.pdf")});
    decoder.before = [this] { std::filesystem::remove(tree.path("kaputt.pdf")); };
    EXPECT_TRUE(search(wanted).gaps.empty());

    tree.lines({"offen.txt=Überweisung", "geheim.txt=Überweisung", "blind/Überweisung.txt=x"});
    const ClosedFolders closed(tree, {"geheim.txt", "blind"});
    if (!closed)
        GTEST_SKIP() << "privileges cannot be dropped";
    ::chmod(tree.path("blind").c_str(), 0400); // can be listed, but its entries cannot be examined
    FolderSearchResult result = search(wanted);
    ASSERT_EQ(result.items.size(), 1u);
    EXPECT_EQ(result.passages.at(tree.path("offen.txt")), u"Zeile 1: Überweisung"_qs);
    EXPECT_EQ(result.gaps.files, (std::vector{tree.path("blind/Überweisung.txt"), tree.path("geheim.txt")}));
    EXPECT_EQ(gapsText(result.gaps), u"2 Dateien nicht lesbar"_qs);
    result = searchFolder({tree.root(), wanted});
    EXPECT_EQ(result.gaps.files, std::vector{tree.path("blind/Überweisung.txt")}) << "a search by name as well";
}

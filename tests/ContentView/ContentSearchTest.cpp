#include "ContentView/ContentSearch.h"

#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

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
}

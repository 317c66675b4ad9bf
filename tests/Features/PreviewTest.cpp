#include "Features/PreviewFacts.h"
#include "Features/PreviewLoader.h"
#include "Features/PreviewText.h"
#include "Support/FakeClock.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;
using namespace std::chrono_literals;

namespace {

using State = PreviewContent::State;

class PreviewTest : public testing::Test {
protected:
    /// The preview of an entry once it is complete.
    PreviewContent shown(const Location &entry)
    {
        loader.show(entry);
        EXPECT_TRUE(waitUntil([&] { return isSettled(entry); })) << entry;
        return loader.content.get();
    }
    bool isSettled(const Location &entry) const
    {
        const PreviewContent &content = loader.content.get();
        return content.entry == entry && (content.state == State::Ready || content.state == State::Failed);
    }
    static QString fact(const PreviewContent &content, const QString &label)
    {
        for (const PreviewFact &fact : content.facts) {
            if (fact.label == label)
                return fact.value;
        }
        return {};
    }
    QString reason(const PreviewContent &content) const { return std::get<PreviewNothing>(content.body).reason; }

    const TempTree tree;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    FakeDecoder decoder;
    FakeClock clock;
    PreviewLoader loader{defaults, volumes, decoder, clock};
};

} // namespace

TEST(PreviewTextTest, guessesTheEncoding)
{
    using namespace std::string_literals;
    const struct {
        std::string bytes;
        bool cutOff;
        std::optional<QString> text;
    } rows[] = {
        {"", false, u""_qs},
        {"Gr\xC3\xBC\xC3\x9F"
         "e\r\n",
         false, u"Grüße\n"_qs},
        {"\xEF\xBB\xBFGr\xC3\xBC", false, u"Grü"_qs},
        {"Gr\xC3\xBC\xC3", true, u"Grü"_qs},
        {"Gr\xC3\xBC\xC3", false, QString::fromLatin1("Gr\xC3\xBC\xC3")},
        {"Gr\xFC\xDF"
         "e",
         false, u"Grüße"_qs},
        {"\xFF\xFEG\0r\0\xFC\0"s, false, u"Grü"_qs},
        {"\xFE\xFF\0G\0r\0\xFC"s, false, u"Grü"_qs},
        {"G\0r\0\xFC\0n\0"s, false, u"Grün"_qs},
        {"\0G\0r\0\xFC\0n"s, false, u"Grün"_qs},
        {"\x7F"
         "ELF\2\1\1\0\0\0\0"s,
         false, std::nullopt},
        {"\x01\x02\x03\x04 text", false, std::nullopt},
    };
    for (const auto &row : rows) {
        const std::optional<PreviewText> text = previewText(QByteArray::fromStdString(row.bytes), row.cutOff);
        EXPECT_EQ(text.has_value(), row.text.has_value()) << row.bytes;
        EXPECT_EQ(text.value_or(PreviewText()).text, row.text.value_or(QString())) << row.bytes;
    }
    const QString lines = previewText(QByteArray(5000, 'x'), false)->text;
    EXPECT_EQ(lines.count(u'x'), 5000);
    EXPECT_EQ(lines.count(u'\n'), 2) << "a line is too long to be laid out";
}

TEST(PreviewFactsTest, speakAsPeopleDo)
{
    EXPECT_EQ(lengthText(0.4) + u' ' + lengthText(67.6) + u' ' + lengthText(3725) + u' ' + lengthText(1e300).left(6),
              u"0:00 1:08 1:02:05 277777"_qs);
}

TEST_F(PreviewTest, tellsWhatFilesSayOfThemselves)
{
    decoder.answers.emplace(
        decoderWords::facts,
        QByteArray(R"({"width":4000,"height":3000,"taken":"2026-08-01T10:00:00","camera":"X 1","seconds":67})"));
    const PreviewContent picture = shown(tree.file("Bild.jpg", "12345"));
    EXPECT_EQ(std::get<PreviewPicture>(picture.body).picture, redPicture());
    EXPECT_EQ(std::get<PreviewPicture>(picture.body).whole, QSizeF(4000, 2000)) << "in the shape of what was decoded";
    EXPECT_TRUE(picture.summary.endsWith(u" · 5 Byte")) << picture.summary.toStdString();
    EXPECT_EQ(fact(picture, u"Abmessungen"_qs), u"4.000 × 3.000"_qs);
    EXPECT_EQ(fact(picture, u"Aufgenommen"_qs), u"1. August 2026, 10:00"_qs);
    EXPECT_EQ(fact(picture, u"Kamera"_qs), u"X 1"_qs);
    EXPECT_EQ(fact(picture, u"Dauer"_qs), u"1:07"_qs);
    EXPECT_EQ(fact(picture, u"Ort"_qs), shownName(tree.root()));
    EXPECT_TRUE(std::holds_alternative<PreviewNothing>(shown(tree.file("Lied.mp3", "12345")).body));

    decoder.answers.insert_or_assign(
        decoderWords::archive,
        QByteArray(
            R"({"entries":[{"name":"a/","folder":true},{"name":"a/b","size":7},{"name":"c","size":1e300}],"more":false,"damaged":true})"));
    const PreviewContent archive = shown(tree.file("x.zip", "12345"));
    const PreviewArchive &listed = std::get<PreviewArchive>(archive.body);
    EXPECT_EQ(listed.entries,
              (std::vector<PreviewArchiveEntry>{{u"a/"_qs, {}, true}, {u"a/b"_qs, 7, false}, {u"c"_qs, {}, false}}))
        << "what no file can be long has no size";
    EXPECT_FALSE(listed.remark.isEmpty());
    EXPECT_TRUE(archive.summary.endsWith(u"3 Einträge"));
}

TEST_F(PreviewTest, turnsThePagesOfADocument)
{
    decoder.answers.emplace(decoderWords::facts, QByteArray(R"({"pages":3,"pageWidth":600,"pageHeight":300})"));
    const Location pdf = tree.file("a.pdf", "12345");
    EXPECT_TRUE(shown(pdf).summary.endsWith(u"5 Byte · 3 Seiten"));
    EXPECT_EQ(std::get<PreviewPage>(loader.content.get().body).whole, QSizeF(800, 400)) << "at 96 pixels per inch";
    for (const auto &[asked, page] : {std::pair(2, 2), std::pair(7, 2), std::pair(0, 0)}) {
        loader.showPage(asked);
        EXPECT_TRUE(waitUntil([&, page] { return std::get<PreviewPage>(loader.content.get().body).page == page; }));
    }
}

TEST_F(PreviewTest, showsTextAndSaysWhatIsNone)
{
    EXPECT_EQ(std::get<PreviewText>(shown(tree.file("a.txt", "Gr\xC3\xBC\xC3\x9F"
                                                             "e"))
                                        .body)
                  .text,
              u"Grüße"_qs);
    EXPECT_FALSE(reason(shown(tree.file("a.bin", std::string(50, '\0')))).isEmpty());
    const PreviewText large = std::get<PreviewText>(shown(tree.file("large.log", std::string(300'000, 'x'))).body);
    EXPECT_TRUE(large.cutOff);
    EXPECT_EQ(large.text.count(u'x'), previewTextBytes);
    decoder.answer = failure(undecodable());
    EXPECT_FALSE(reason(shown(tree.file("broken.png", "x"))).isEmpty());
    EXPECT_EQ(shown(tree.path("missing")).state, State::Failed);
    tree.link("link", "gone/target");
    EXPECT_EQ(fact(shown(tree.path("link")), u"Ziel"_qs), u"target"_qs);
    ASSERT_EQ(::mkfifo(tree.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(reason(shown(tree.path("pipe"))).isEmpty());
}

TEST_F(PreviewTest, sumsUpAFolder)
{
    tree.lines({"f/a.txt=12345", "f/g/b.txt=123", "f/g/leer/"});
    const PreviewContent folder = shown(tree.path("f"));
    EXPECT_EQ(folder.summary, u"Ordner · 8 Byte"_qs);
    EXPECT_EQ(fact(folder, u"Inhalt"_qs), u"2 Dateien, 2 Ordner"_qs);
    EXPECT_FALSE(fact(folder, u"Neuestes"_qs).isEmpty());
}

TEST_F(PreviewTest, showsOnlyTheEntryChosenLast)
{
    const Location slow = tree.file("slow.png", "x");
    const Location quick = tree.file("quick.txt", "text");
    decoder.hold(true);
    loader.show(slow);
    EXPECT_TRUE(waitUntil([&] { return !decoder.asked().empty(); }));
    EXPECT_EQ(loader.content.get().state, State::Loading);
    std::vector<Location> seen;
    QObject watching;
    loader.content.observe(&watching, [&](const PreviewContent &content) { seen.push_back(content.entry); });
    EXPECT_TRUE(std::holds_alternative<PreviewText>(shown(quick).body));
    decoder.hold(false);
    loader.show(std::nullopt);
    EXPECT_EQ(loader.content.get(), PreviewContent());
    EXPECT_TRUE(std::ranges::find(seen, slow) == seen.end()) << "an answer came after its time";
}

TEST_F(PreviewTest, readsTheSameEntryAgainWithoutAFlash)
{
    const Location text = tree.file("a.txt", "old");
    shown(text);
    std::vector<State> seen;
    QObject watching;
    loader.content.observe(&watching, [&](const PreviewContent &content) { seen.push_back(content.state); });
    tree.file("a.txt", "new words");
    loader.show(text);
    EXPECT_TRUE(waitUntil([&] { return !seen.empty(); }));
    EXPECT_EQ(seen, std::vector{State::Ready});
    EXPECT_EQ(std::get<PreviewText>(loader.content.get().body).text, u"new words"_qs);
}

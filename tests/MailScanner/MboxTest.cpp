#include "MailScanner/Mbox.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class MboxTest : public testing::Test {
protected:
    /// The messages of a file with this content, as "subject@offset", and as bytes.
    std::vector<std::string> messages(const std::string &content)
    {
        const Location file = tree.file("mbox", content);
        std::vector<std::string> found;
        all.clear();
        EXPECT_TRUE(readMbox(file, [&](const MboxMessage &one) {
            all.push_back(one);
            found.push_back(
                content.substr(static_cast<std::size_t>(one.offset), static_cast<std::size_t>(one.end - one.offset)));
            return true;
        }));
        return found;
    }

    TempTree tree;
    std::vector<MboxMessage> all;
};

} // namespace

TEST_F(MboxTest, splitsAtSeparatorsOnly)
{
    const std::string first = "Subject: a\nTo: b\n\nErste Zeile\nFrom mir\n\nFrom nun an ist es Text\n\n";
    const std::string second = "Subject: c\n\n\n";
    const std::string third = ">From - doppelt\nSubject: d\n\nFrom x\n: kein Kopf\n";
    EXPECT_EQ(messages("From - Mon Mar  2 10:00:00 2026\n" + first + "From b@c Tue\n" + second + "From \n" + third),
              (std::vector<std::string>{first, second, third}));
    EXPECT_EQ(all[0].separator, "From - Mon Mar  2 10:00:00 2026");
    EXPECT_EQ(all[0].header, "Subject: a\nTo: b\n\n");
    EXPECT_EQ(all[1].header, "Subject: c\n\n");
}

TEST_F(MboxTest, readsDosLineEndsAndFilesCutOff)
{
    EXPECT_EQ(messages("From a\r\nSubject: a\r\n\r\nText\r\n\r\nFrom b\r\nSubject: b\r\n\r\nEnde"),
              (std::vector<std::string>{"Subject: a\r\n\r\nText\r\n\r\n", "Subject: b\r\n\r\nEnde"}));
    EXPECT_EQ(all[0].header, "Subject: a\r\n\r\n");
    EXPECT_EQ(messages("From a\nSubject: ohne Ende"), std::vector<std::string>{"Subject: ohne Ende"});
    EXPECT_TRUE(messages("").empty());
    EXPECT_TRUE(messages("From").empty());
    EXPECT_TRUE(messages("kein Postfach\n").empty());
}

TEST_F(MboxTest, tellsDeletedMessages)
{
    messages("From a\nX-Mozilla-Status: 0009\nSubject: weg\n\nx\n\nFrom b\nSubject: da\nX-Mozilla-Status: 0001\n\n"
             "X-Mozilla-Status: 0008\n");
    ASSERT_EQ(all.size(), 2U);
    EXPECT_TRUE(all[0].deleted) << "the first field";
    EXPECT_FALSE(all[1].deleted);
}

TEST_F(MboxTest, findsSeparatorsWhereverThePiecesOfReadingEnd)
{
    // Around the border of a piece of 1 MB, at every position of the separator.
    const std::string head = "From a\nSubject: a\n\n";
    for (std::size_t shift = 0; shift < 24; ++shift) {
        const std::string text(std::size_t(1 << 20) - head.size() - 12 + shift, 'x');
        const std::string second = "Subject: b\n\n" + std::string(3 << 20, 'y') + "\n\n";
        EXPECT_EQ(messages(head + text + "\n\nFrom b\n" + second + "From c\nSubject: c\n\n"),
                  (std::vector<std::string>{head.substr(7) + text + "\n\n", second, "Subject: c\n\n"}))
            << shift;
    }
}

TEST_F(MboxTest, stopsWhenAskedToAndRefusesWhatIsNoFile)
{
    const Location file = tree.file("mbox", "From a\nA: b\n\n\nFrom a\nA: b\n\n");
    int visited = 0;
    EXPECT_TRUE(readMbox(file, [&](const MboxMessage &) { return ++visited < 1; }));
    EXPECT_EQ(visited, 1);
    JobControl control;
    control.cancel();
    const Result<void> cancelled = readMbox(file, [](const MboxMessage &) { return true; }, &control);
    ASSERT_FALSE(cancelled);
    EXPECT_TRUE(cancelled.error().isCancelled());
    EXPECT_FALSE(readMbox(tree.root(), [](const MboxMessage &) { return true; }));
}

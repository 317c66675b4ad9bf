#include "App/ProgramTest.h"
#include "App/TerminalAnswer.h"
#include "Support/PrivateMount.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sys/xattr.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs the real program in an account of its own.
class TransferCommandTest : public ProgramTest {
protected:
    TransferCommandTest() { tree.lines({"von/a.txt=neu", "von/b/innen.txt=zwei", "nach/a.txt=alt"}); }

    ProcessOutput run(const std::string &command, std::vector<std::string> words)
    {
        for (std::string &word : words)
            word = word.starts_with("--") ? word : tree.path(word).native();
        words.insert(words.begin(), command);
        return ProgramTest::run(std::move(words));
    }
    QJsonObject json(const std::string &command, std::vector<std::string> words, int exitCode = 0)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(command, std::move(words));
        EXPECT_EQ(output.exitCode, exitCode) << output.errors.toStdString();
        return QJsonDocument::fromJson(output.output).object();
    }
};

} // namespace

TEST_F(TransferCommandTest, settlesConflictsAsTold)
{
    const std::string before = snapshotOf(tree.path("nach"));
    const QJsonObject nothing = json("kopieren", {"von/a.txt", "von/b", "nach"}, 130);
    EXPECT_TRUE(nothing[QStringLiteral("cancelled")].toBool());
    EXPECT_TRUE(nothing[QStringLiteral("steps")].toArray().isEmpty());
    EXPECT_EQ(snapshotOf(tree.path("nach")), before);

    const QJsonObject both = json("kopieren", {"--konflikt", "--konflikt=beide", "von/a.txt", "nach"}, 2);
    EXPECT_TRUE(both.isEmpty()); // the second option is not a valid value for the first
    EXPECT_EQ(json("kopieren", {"--konflikt=beide", "von/a.txt", "von/b", "nach"})[QStringLiteral("files")], 2);
    EXPECT_EQ(tree.content("nach/a (2).txt"), "neu");
    EXPECT_EQ(tree.content("nach/b/innen.txt"), "zwei");

    const QJsonObject replaced = json("verschieben", {"--konflikt=ersetzen", "von/a.txt", "nach"});
    const QJsonObject step = replaced[QStringLiteral("steps")].toArray()[0].toObject();
    EXPECT_EQ(step[QStringLiteral("src")].toString().toStdString(), tree.path("von/a.txt").native());
    EXPECT_EQ(step[QStringLiteral("dst")].toString().toStdString(), tree.path("nach/a.txt").native());
    EXPECT_TRUE(step[QStringLiteral("replace")].toBool());
    EXPECT_EQ(replaced[QStringLiteral("bytes")], 3);
    EXPECT_EQ(replaced[QStringLiteral("failures")], QJsonArray());
    EXPECT_EQ(tree.content("nach/a.txt"), "neu");
    EXPECT_EQ(tree.content(".local/share/Trash/files/a.txt"), "alt");
    EXPECT_FALSE(tree.has("von/a.txt"));
}

TEST_F(TransferCommandTest, mergesFoldersAndTreatsTheRestAsTold)
{
    tree.lines({"nach/b/innen.txt=alt zwei", "nach/b/eigen=drei", "von/b/tief/neu=vier"});
    const std::string before = tree.snapshot();
    EXPECT_TRUE(
        json("verschieben", {"--konflikt=zusammenfuehren", "von/b", "nach"}, 130)[QStringLiteral("cancelled")].toBool())
        << "what collides inside is a question of its own";
    EXPECT_EQ(tree.snapshot(), before);
    const QJsonObject merged =
        json("verschieben", {"--konflikt=zusammenfuehren", "--konflikt=ersetzen", "von/b", "von/a.txt", "nach"});
    EXPECT_EQ(merged[QStringLiteral("steps")].toArray().size(), 3);
    EXPECT_EQ(tree.content("nach/b/innen.txt") + tree.content("nach/b/eigen") + tree.content("nach/b/tief/neu") +
                  tree.content("nach/a.txt"),
              "zweidreivierneu");
    EXPECT_FALSE(tree.has("von/b"));
}

TEST_F(TransferCommandTest, namesWhatItCannotDo)
{
    EXPECT_EQ(run("kopieren", {"von"}).exitCode, 2);
    EXPECT_EQ(run("kopieren", {"von/b", "von/a.txt"}).exitCode, 2);
    const ProcessOutput unknown = run("kopieren", {"von/b", "nach", "--konflikt=ersezten"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.errors.toStdString(), "Unbekannte Angabe „ersezten“. Meintest du „ersetzen“?\n");
    EXPECT_FALSE(tree.has("nach/b"));
    // The others are done.
    const QJsonObject partly = json("verschieben", {"fehlt", "von", "von/b", "von/b"}, 1);
    EXPECT_EQ(partly[QStringLiteral("failures")].toArray().size(), 3);
    const QJsonObject rest = json("kopieren", {"fehlt", "von/b", "nach"}, 1);
    EXPECT_EQ(rest[QStringLiteral("failures")].toArray().size(), 1);
    EXPECT_TRUE(tree.has("nach/b/innen.txt"));
}

TEST_F(TransferCommandTest, movesToAnotherVolumeAndBack)
{
    const Location other = otherVolume();
    if (other.empty())
        GTEST_SKIP() << "there is one volume only";
    const TempTree there(other);
    const std::string before = snapshotOf(tree.path("von"));
    for (const auto &[from, to] :
         {std::pair(tree.path("von"), there.root()), std::pair(there.path("von"), tree.root())}) {
        const Result<ProcessOutput> output =
            runner.run({BRELLIN_PROGRAM, {"verschieben", from.native(), to.native()}, {}, {}}, nullptr);
        ASSERT_TRUE(output);
        EXPECT_EQ(output->exitCode, 0) << output->errors.toStdString();
        EXPECT_FALSE(std::filesystem::exists(from));
    }
    EXPECT_EQ(snapshotOf(tree.path("von")), before);
}

TEST_F(TransferCommandTest, saysOnceWhatTheTargetCannotKeep)
{
    const PrivateMount plain(tree.folder("karg"), "ramfs", "");
    if (!plain)
        GTEST_SKIP() << "cannot mount a volume without extended attributes here";
    for (const char *name : {"von/a.txt", "von/b/innen.txt"})
        ASSERT_EQ(::setxattr(tree.path(name).c_str(), "user.xdg.tags", "Rot", 3, 0), 0);
    const ProcessOutput output = run("kopieren", {"von/a.txt", "von/b", "karg"});
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_EQ(output.errors.toStdString(), "Erweiterte Attribute und Markierungen kann das Ziel nicht speichern.\n");
    EXPECT_EQ(output.output.toStdString(), "2 Elemente nach „karg“ kopiert.\n");
}

TEST_F(TransferCommandTest, leavesTheSystemAlone)
{
    const Result<ProcessOutput> output =
        runner.run({BRELLIN_PROGRAM, {"kopieren", tree.path("von/a.txt").native(), "/usr/share"}, {}, {}}, nullptr);
    ASSERT_TRUE(output);
    EXPECT_EQ(output->exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists("/usr/share/a.txt"));
    EXPECT_TRUE(output->errors.contains("Orte des Systems werden nicht verändert."));
}

TEST(TerminalAnswerTest, understandsNumbersWithAndWithoutForAll)
{
    TransferQuestion question;
    question.about = ConflictQuestion{QStringLiteral("a"), 2, false, {}, {}, {}};
    const QuestionText text = textOf(question);
    const auto chosen = [&](const char *line) {
        const auto answer = TerminalAnswer::chosen(text, line);
        return answer ? std::optional(std::get<ConflictAnswer>(*answer)) : std::nullopt;
    };
    EXPECT_EQ(chosen("1\n")->choice, ConflictChoice::replace);
    EXPECT_FALSE(chosen("1\n")->forAll);
    EXPECT_TRUE(chosen(" 3a \n")->forAll);
    EXPECT_EQ(chosen("4")->choice, std::nullopt);
    for (const char *line : {"", "\n", "a", "0", "5", "ja", "1b"})
        EXPECT_FALSE(chosen(line)) << line;
}

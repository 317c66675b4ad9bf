#include "App/ProgramTest.h"
#include "FileOperations/RenameLog.h"
#include "Runs/RunJournal.h"
#include "Support/WaitUntil.h"
#include "System/PrivateFolders.h"
#include "Transfers/TransferLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// The real program in an account in which other processes were killed.
class RemnantsTest : public ProgramTest {
protected:
    RemnantsTest() { tree.lines({"ziel/", "f/", "Downloads/", "Documents/"}); }
    /// "kind name bytes", sorted.
    QStringList listed(std::vector<std::string> words = {"reste"})
    {
        words.emplace_back("--json");
        QStringList all;
        for (const QJsonValue &one : QJsonDocument::fromJson(run(words).output).array()) {
            const Location path = locationFromText(one[QStringLiteral("path")].toString());
            all << one[QStringLiteral("kind")].toString() + u' ' + shownName(path) + u' ' +
                       QString::number(one[QStringLiteral("bytes")].toInt());
        }
        all.sort();
        return all;
    }
    bool mentions() { return run({"schnellzugriff"}).errors.contains("brellin reste --aufraeumen"); }

    Location unfinishedCopy(TransferLog &log, std::string_view content)
    {
        const Location place = log.temporaryFor(tree.path("ziel/Film.mp4"));
        tree.file(place.lexically_relative(tree.root()).native(), content);
        return place;
    }
    Location waitingName(const std::string &name)
    {
        const Location temporary = tree.path("f") / temporaryName(name, tree.path("f"));
        tree.file(temporary.lexically_relative(tree.root()).native(), "wartet");
        EXPECT_TRUE(RenameLog::create(state / "umbenennen",
                                      {{tree.path("f") / name, tree.path("f/neu.txt"), temporary, 0, 0}}));
        return temporary;
    }
    /// A run killed after moving a file and before journalling the result.
    QUuid killedRun()
    {
        tree.file("Downloads/Beleg.pdf", "beleg");
        const Location from = tree.path("Downloads/Beleg.pdf");
        const Location to = tree.path("Documents/Beleg.pdf");
        const QUuid id = QUuid::createUuid();
        EXPECT_TRUE(createPrivateFolders(state / "journal"));
        Result<RunJournal> journal =
            RunJournal::create(state / "journal", RunJournal::Purpose::Run, id, Instant(std::chrono::days(20000)));
        const PlannedStep step{AgentProposal::Kind::Move, from, to, EntryMark::of(*readAttributes(from)), {}};
        EXPECT_TRUE(journal && journal->plan({&step, 1}));
        std::filesystem::rename(from, to);
        return id;
    }

    Location state = tree.path(".local/state/brellin");
};

} // namespace

TEST_F(RemnantsTest, areListedSaidByEveryCommandAndSettled)
{
    {
        TransferLog log(state / "transfers");
        unfinishedCopy(log, "halb");
    }
    tree.lines({"Downloads/.brellin-zip-tot/sperre=", "Downloads/.brellin-zip-tot/inhalt/Archiv.zip=halb"});
    const Location waits = waitingName("a \"b\"\n\\c.txt");
    const QUuid id = killedRun();
    EXPECT_TRUE(mentions());
    const QStringList all = listed();
    ASSERT_EQ(all.size(), 4);
    EXPECT_EQ(all[0], QStringLiteral("archive .brellin-zip-tot 4"));
    EXPECT_TRUE(all[1].startsWith(QStringLiteral("rename ") + shownName(waits)) && all[1].endsWith(u" 6"));
    EXPECT_TRUE(all[2].startsWith(QStringLiteral("run run-")));
    EXPECT_TRUE(all[3].startsWith(QStringLiteral("transfer .brellin-kopie-")) && all[3].endsWith(u" 4"));

    EXPECT_EQ(run({"reste", "--aufräumen"}).exitCode, 0);
    EXPECT_EQ(listed(), QStringList());
    EXPECT_FALSE(mentions());
    EXPECT_TRUE(std::filesystem::is_empty(tree.path("ziel")));
    EXPECT_EQ(tree.content("f/a \"b\"\n\\c.txt"), "wartet");
    EXPECT_TRUE(run({"verlauf"}).output.contains(id.toByteArray(QUuid::WithoutBraces).toUpper()));
}

TEST_F(RemnantsTest, ofAKilledPackingAreFoundWhereverTheyLie)
{
    std::filesystem::resize_file(tree.file("f/lang", "x"), 8'000'000'000); // packing it takes a while
    const std::string archived = tree.path("f/lang").native();
    const pid_t packer = ::fork();
    if (packer == 0) {
        ::execl(BRELLIN_PROGRAM, "brellin", "zip", archived.c_str(), nullptr);
        ::_exit(127);
    }
    const auto packs = [&] {
        return std::ranges::any_of(std::filesystem::directory_iterator(tree.path("f")), [](const auto &entry) {
            const Location content = entry.path() / "inhalt";
            return std::filesystem::exists(content) && !std::filesystem::is_empty(content);
        });
    };
    EXPECT_TRUE(waitUntil(packs));
    EXPECT_EQ(listed(), QStringList()) << "it lives";
    ::kill(packer, SIGKILL);
    ::waitpid(packer, nullptr, 0);
    const QStringList left = listed();
    ASSERT_EQ(left.size(), 1);
    EXPECT_TRUE(left[0].startsWith(QStringLiteral("archive .brellin-zip-"))) << left[0].toStdString();
    EXPECT_TRUE(mentions());
    EXPECT_EQ(run({"reste", "--aufraeumen"}).exitCode, 0);
    EXPECT_EQ(listed(), QStringList());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(tree.path("f")), {}), 1);
}

TEST_F(RemnantsTest, endAMoveThatWasKilledAtItsSource)
{
    tree.lines({"f/Fotos/a=eins", "f/Fotos/b=zwei", "ziel/Fotos/a=eins", "ziel/Fotos/b=ZWEI"});
    for (const char *copy : {"ziel/Fotos/a", "ziel/Fotos/b"})
        std::filesystem::last_write_time(
            tree.path(copy),
            std::filesystem::last_write_time(tree.path("f") / Location(copy).lexically_relative("ziel")));
    if (::fork() == 0) {
        TransferLog log(state / "transfers");
        (void)log.noteRemovals({{tree.path("f/Fotos"), tree.path("ziel/Fotos")}});
        ::_exit(0);
    }
    ::wait(nullptr);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("move Fotos 8")));
    EXPECT_TRUE(mentions());
    const ProcessOutput output = run({"reste", "--aufraeumen"});
    EXPECT_TRUE(output.errors.contains("b: Weicht von der Kopie ab und bleibt am alten Ort.")) << output.errors.data();
    EXPECT_FALSE(tree.has("f/Fotos/a"));
    EXPECT_EQ(tree.content("f/Fotos/b"), "zwei");
    EXPECT_EQ(listed(), QStringList());
}

TEST_F(RemnantsTest, leaveOutWhatLivesAndKeepWhatNobodyUnderstands)
{
    const std::string before = tree.snapshot();
    EXPECT_EQ(listed(), QStringList());
    EXPECT_EQ(tree.snapshot(), before);

    TransferLog living(state / "transfers");
    const Location copy = unfinishedCopy(living, "wächst");
    EXPECT_EQ(listed(), QStringList());
    tree.file(".local/state/brellin/journal/run-1.jsonl.ungeklärt", "{\"run\"");
    tree.file(".local/state/brellin/umbenennen/1.json.ungeklärt", "[]");
    EXPECT_TRUE(mentions());
    EXPECT_EQ(run({"reste", "--aufraeumen"}).exitCode, 0);
    EXPECT_EQ(listed(), (QStringList{QStringLiteral("unresolved 1.json.ungeklärt 2"),
                                     QStringLiteral("unresolved run-1.jsonl.ungeklärt 6")}));
    EXPECT_TRUE(entryExists(copy));
    for (const char *aside : {"journal/run-1.jsonl.ungeklärt", "umbenennen/1.json.ungeklärt"})
        EXPECT_EQ(run({"papierkorb", (state / aside).native()}).exitCode, 0);
    EXPECT_EQ(listed(), QStringList());
}

TEST_F(RemnantsTest, thatCannotBeSettledNowAreNamed)
{
    killedRun();
    const Result<FileLock> agent = FileLock::tryNow(state / "agent.lock");
    ASSERT_TRUE(agent);
    const ProcessOutput output = run({"reste", "--aufraeumen"});
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_TRUE(output.errors.contains("Nicht aufgeräumt: ~/.local/state/brellin/journal/run-"))
        << output.errors.data();
    EXPECT_EQ(listed().size(), 1);
}

TEST_F(RemnantsTest, areNamedWhereTheirLogCannotBeReadAndTheLogStays)
{
    tree.file(".local/state/brellin/transfers/1.log", "unleserlich\n");
    tree.file(".local/state/brellin/umbenennen/2.json", "[{\"from\":\"/f/a\",");
    for (const char *const tooLong :
         {".local/state/brellin/journal/run-3.jsonl", ".local/state/brellin/journal/undo-4.jsonl"})
        std::filesystem::resize_file(tree.file(tooLong, ""), longestLog + 1);
    std::filesystem::resize_file(tree.file(".local/state/brellin/archive/5.note", ""), 1 << 20);
    EXPECT_TRUE(mentions());
    const ProcessOutput output = run({"reste", "--aufraeumen"});
    EXPECT_EQ(output.exitCode, 0) << output.errors.data();
    EXPECT_TRUE(output.errors.contains("„1.log“ ist nicht lesbar: Zeile 1 ist beschädigt.")) << output.errors.data();
    EXPECT_TRUE(output.errors.contains("„run-3.jsonl“ ist nicht lesbar: Die Datei ist größer")) << output.errors.data();
    EXPECT_TRUE(output.errors.contains("„5.note“ ist nicht lesbar: Die Datei ist größer")) << output.errors.data();
    QStringList names;
    for (const QString &line : listed())
        names << line.section(u' ', 0, 1);
    EXPECT_EQ(names, (QStringList{QStringLiteral("unresolved 1.log"), QStringLiteral("unresolved 2.json"),
                                  QStringLiteral("unresolved 5.note"), QStringLiteral("unresolved run-3.jsonl"),
                                  QStringLiteral("unresolved undo-4.jsonl")}));
}

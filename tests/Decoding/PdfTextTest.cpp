#include "Decoding/Confinement.h"
#include "Disk/FileAttributes.h"
#include "Support/SmallPdf.h"
#include "Support/TempTree.h"
#include "System/PdfReader.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Returns canned results without running anything.
class ScriptedRunner : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *) override
    {
        asked = request;
        return answer;
    }

    ProcessRequest asked;
    Result<ProcessOutput> answer = ProcessOutput{0,
                                                 "Stra\xC3\x9F"
                                                 "e",
                                                 {}};
};

/// Whether a call failed with EPERM.
bool refused(long answer)
{
    return answer < 0 && errno == EPERM;
}

/// Attempts in a confined process what a hostile file might do; returns how many succeeded.
int attempts(const Location &existing)
{
    const int open = ::open(existing.c_str(), O_RDONLY);
    if (!confineThisProcess())
        return -1;
    int succeeded = 0;
    const auto attempt = [&](bool wasRefused) { succeeded += wasRefused ? 0 : 1; };
    attempt(refused(::socket(AF_INET, SOCK_STREAM, 0)));
    attempt(refused(::open(existing.c_str(), O_WRONLY)));
    attempt(refused(::open((existing.native() + ".new").c_str(), O_CREAT | O_RDONLY, 0600)));
    attempt(refused(::unlink(existing.c_str())));
    attempt(refused(::rename(existing.c_str(), (existing.native() + ".moved").c_str())));
    attempt(refused(::truncate(existing.c_str(), 0)));
    attempt(refused(::fchmod(open, 0)));
    attempt(refused(::execl("/bin/true", "true", nullptr)));
    attempt(refused(::fork()));
    char byte = 0;
    attempt(::read(open, &byte, 1) == 1);
    attempt(::open(existing.c_str(), O_RDONLY) >= 0);
    return succeeded;
}

} // namespace

TEST(PdfTextTest, readsTheFirstPageInItsOwnProcess)
{
    const TempTree tree;
    SystemProcessRunner processes;
    const PdfReader reader(processes, BRELLIN_BILD);
    const Location pdf = tree.file("Rech\xFFnung.pdf", smallPdf("Rechnung \xFC"
                                                                "ber Strom"));
    tree.age("Rech\xFFnung.pdf", std::chrono::sys_days(std::chrono::year(2020) / 1 / 1));
    const Instant accessed = readAttributes(pdf)->accessed;
    EXPECT_EQ(reader.firstPageText(pdf).value_or(QString()).trimmed(), QStringLiteral("Rechnung über Strom"));
    EXPECT_EQ(readAttributes(pdf)->accessed, accessed);
}

TEST(PdfTextTest, failsForWhatIsNoPdf)
{
    const TempTree tree;
    SystemProcessRunner processes;
    const PdfReader reader(processes, BRELLIN_BILD);
    const std::string whole = smallPdf("Text");
    ASSERT_EQ(::mkfifo(tree.path("pipe.pdf").c_str(), 0600), 0);
    for (const Location &pdf :
         {tree.file("rubbish.pdf", "no PDF at all"), tree.file("empty.pdf"), tree.file("cut.pdf", whole.substr(0, 120)),
          tree.folder("folder.pdf"), tree.link("link.pdf", "cut.pdf"), tree.path("pipe.pdf"), tree.path("missing.pdf")})
        EXPECT_FALSE(reader.firstPageText(pdf)) << pdf;
    EXPECT_FALSE(PdfReader(processes, tree.path("no-program")).firstPageText(tree.file("good.pdf", whole)));
}

TEST(PdfTextTest, passesOnWhatTheDecoderSays)
{
    ScriptedRunner runner;
    const PdfReader reader(runner, "/somewhere/brellin-bild");
    EXPECT_EQ(reader.firstPageText("/home/x/-a.pdf").value_or(QString()), QStringLiteral("Straße"));
    EXPECT_EQ(runner.asked.program, "/somewhere/brellin-bild");
    EXPECT_EQ(runner.asked.arguments, (std::vector<std::string>{"pdf-text", "/home/x/-a.pdf"}));
    EXPECT_LE(runner.asked.timeout, std::chrono::seconds(10));
    runner.answer = ProcessOutput{1, "half a page", {}};
    EXPECT_FALSE(reader.firstPageText("/home/x/a.pdf"));
    runner.answer = failure(Failure::cancelled());
    EXPECT_TRUE(reader.firstPageText("/home/x/a.pdf").error().isCancelled());
}

TEST(ConfinementTest, leavesAProcessNothingButReading)
{
    const TempTree tree;
    const Location file = tree.file("file", "content");
    const std::string before = tree.snapshot();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(attempts(file));
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(tree.snapshot(), before);
}

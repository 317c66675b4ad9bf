#include "SendTo/SendToTargets.h"
#include "SendTo/MailAttachment.h"
#include "Support/TempTree.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;
using Kind = SendToTarget::Kind;

namespace {

class SendToTargetsTest : public testing::Test {
protected:
    QStringList names() const
    {
        QStringList all;
        for (const SendToTarget &target : model.targets.get())
            all << target.name;
        return all;
    }

    MemoryUserDefaults defaults;
    KnownFolders folders = KnownFolders::ofThisUser();
    SendToTargets model{defaults, folders};
};

/// Records what it is asked to run.
class RecordingRunner : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *) override
    {
        requests.push_back(request);
        return ProcessOutput{exitCode, {}, {}};
    }
    std::vector<ProcessRequest> requests;
    int exitCode = 0;
};

} // namespace

TEST_F(SendToTargetsTest, beginsWithTheUsualOnesAndKeepsWhatIsChanged)
{
    const QStringList usual = names();
    EXPECT_EQ(usual.size(), 4);
    EXPECT_EQ(defaults.json(QStringLiteral("sendToTargets")), std::nullopt);
    model.addFolder("/mnt/stick/\xFF");
    model.addFolder("/mnt/stick/\xFF/");
    model.addFolder("/mnt/bilder", QStringLiteral("Bilder"));
    model.add(Kind::Zip);
    EXPECT_EQ(names().size(), 6);
    model.move(model.targets.get().back().id, 0);
    model.move(model.targets.get()[1].id, 99);
    model.rename(model.targets.get()[0].id, QStringLiteral("  Fotos "));
    model.rename(model.targets.get()[0].id, QStringLiteral(" "));
    model.remove(model.targets.get()[1].id);
    EXPECT_EQ(names().front(), QStringLiteral("Fotos"));
    EXPECT_EQ(names().back(), usual.front());
    EXPECT_EQ(names().size(), 5);
    EXPECT_EQ(SendToTargets(defaults, folders).targets.get(), model.targets.get());

    for (const SendToTarget &target : std::vector(model.targets.get()))
        model.remove(target.id);
    EXPECT_TRUE(SendToTargets(defaults, folders).targets.get().empty()); // an empty list is valid too
    model.restoreDefaults();
    EXPECT_EQ(names(), usual);
}

TEST_F(SendToTargetsTest, keepsWhatAnotherWindowHasAdded)
{
    SendToTargets other(defaults, folders);
    other.addFolder("/a", QStringLiteral("A"));
    model.addFolder("/b", QStringLiteral("B"));
    other.reload();
    EXPECT_EQ(other.targets.get(), model.targets.get());
    EXPECT_EQ(names().size(), 6);
}

TEST(MailAttachmentTest, attachesFilesByTheirBytesAndNoFolders)
{
    const TempTree tree;
    const Location file = tree.file("-\xFF.pdf", "x");
    RecordingRunner runner;
    ASSERT_TRUE(attachToMail({file}, runner, nullptr));
    EXPECT_EQ(runner.requests.at(0).program, "xdg-email");
    EXPECT_EQ(runner.requests.at(0).arguments, (std::vector<std::string>{"--attach", file.native()}));
    EXPECT_FALSE(attachToMail({file, tree.root()}, runner, nullptr));
    EXPECT_FALSE(attachToMail({tree.path("fehlt")}, runner, nullptr));
    EXPECT_FALSE(attachToMail({}, runner, nullptr));
    EXPECT_EQ(runner.requests.size(), 1U);
    runner.exitCode = 3;
    EXPECT_FALSE(attachToMail({file}, runner, nullptr));
}

#include "App/Window/PreviewSide.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

class PreviewHintTest : public ::testing::Test {
protected:
    PreviewHintTest()
    {
        folders.home = "/home/anna";
        forecast.rule = CleanupRule();
        forecast.rule->name = QStringLiteral("Rechnungen");
        forecast.verdict = RuleVerdict::Takes;
        forecast.destination = Location("/home/anna/Briefe/2026/r.pdf");
    }
    std::string text() const { return hintText(forecast, folders).toStdString(); }

    KnownFolders folders = KnownFolders::ofThisUser();
    RuleForecast forecast;
};

TEST_F(PreviewHintTest, saysWhatWouldHappenAndWhereTo)
{
    using enum AgentProposal::Kind;
    const std::string would = "Regel „Rechnungen“ würde diese Datei ";
    EXPECT_EQ(text(), would + "nach Briefe › 2026 verschieben.");
    forecast.kind = Copy;
    EXPECT_EQ(text(), would + "nach Briefe › 2026 kopieren.");
    forecast.kind = Rename;
    EXPECT_EQ(text(), would + "in „r.pdf“ umbenennen.");
    forecast.kind = Trash;
    forecast.destination.reset();
    EXPECT_EQ(text(), would + "in den Papierkorb legen.");
    forecast.kind = Move;
    forecast.destination = Location("/home/anna/Briefe");
    forecast.chosenByModel = true;
    EXPECT_EQ(text(), would + "in einen Ordner in Briefe verschieben.");
    forecast.chosenByModel = false;
    forecast.destination = Location("/home/anna/r.pdf");
    EXPECT_EQ(text(), would + "nach Benutzerordner verschieben.");
}

TEST_F(PreviewHintTest, saysWhyItWouldNot)
{
    forecast.verdict = RuleVerdict::Protected;
    EXPECT_TRUE(text().ends_with("verschieben – aber sie ist geschützt.")) << text();
    forecast.verdict = RuleVerdict::NamedByScript;
    EXPECT_TRUE(text().ends_with("verschieben – aber ein Skript benutzt sie.")) << text();
    forecast.verdict = RuleVerdict::NoRule;
    EXPECT_EQ(text(), "");
}

} // namespace

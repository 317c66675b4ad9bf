#include "App/ProgramFolders.h"
#include "App/ProgramTest.h"
#include "Features/FolderColors.h"
#include "System/FileUserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs the real program over folders that have colours.
class FolderColorCommandsTest : public ProgramTest {
protected:
    FolderColorCommandsTest() { tree.lines({"von/rot/x", "nach/", "Downloads/Rechnung.pdf=eins"}); }

    void color(std::string_view entry, const QString &tag)
    {
        FileUserDefaults settings(settingsFolder(tree.root()));
        FolderColors(settings).setColor(tree.path(entry), tag);
    }
    QString colorOf(const Location &entry)
    {
        FileUserDefaults settings(settingsFolder(tree.root()));
        return FolderColors(settings).color(entry).value_or(QString());
    }
    QString colorOf(const char *entry) { return colorOf(tree.path(entry)); }
    QJsonObject json(std::vector<std::string> words)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, 0) << output.errors.toStdString();
        return QJsonDocument::fromJson(output.output).object();
    }
    void does(std::vector<std::string> words)
    {
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, 0) << output.errors.toStdString();
    }

    const QString red = QStringLiteral("Rot");
};

} // namespace

TEST_F(FolderColorCommandsTest, colorsGoAlongWithTheirFolders)
{
    color("von/rot", red);
    does({"verschieben", tree.path("von/rot"), tree.path("nach")});
    EXPECT_EQ(colorOf("nach/rot"), red);
    EXPECT_EQ(colorOf("von/rot"), QString());
    does({"kopieren", tree.path("nach/rot"), tree.path("von")});
    does({"zip", tree.path("nach/rot")});
    does({"verknuepfung", tree.path("nach/rot")});
    EXPECT_EQ(colorOf("nach/rot"), red) << "what is made from it leaves it alone";
    EXPECT_EQ(colorOf("von/rot"), QString());
    does({"umbenennen", "--modus", "ersetzen", "--suchen", "rot", "--ersetzen", "neu", tree.path("nach/rot")});
    EXPECT_EQ(colorOf("nach/neu"), red);
    does({"papierkorb", tree.path("nach/neu")});
    EXPECT_EQ(colorOf("nach/neu"), QString());
    EXPECT_EQ(colorOf(".local/share/Trash/files/neu"), red) << "for putting it back";
}

TEST_F(FolderColorCommandsTest, runsOfTheAgentCarryColorsThereAndBack)
{
    // By its rules the agent moves files, which are told of in the same way.
    color("Downloads/Rechnung.pdf", red);
    const QJsonObject done = json({"pruefen", "--ausfuehren"});
    const QJsonArray steps = done[QStringLiteral("run")].toObject()[QStringLiteral("steps")].toArray();
    ASSERT_EQ(steps.size(), 1);
    const Location place = steps[0].toObject()[QStringLiteral("to")].toString().toStdString();
    EXPECT_EQ(colorOf(place), red);
    EXPECT_EQ(colorOf("Downloads/Rechnung.pdf"), QString());
    json({"rueckgaengig"});
    EXPECT_EQ(colorOf("Downloads/Rechnung.pdf"), red);
    EXPECT_EQ(colorOf(place), QString());
}

#include "Agent/Screens/ProposalList.h"
#include "Agent/Screens/ScreenWorld.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

using namespace brellin;
using namespace brellin::test;

namespace {

class ProposalsTest : public ScreenWorld {
protected:
    ProposalList &list() const { return *find<ProposalList>("agentProposals"); }
    QString textOfRow(int row) const { return list().model()->index(row, 0).data().toString(); }
    Qt::CheckState tickOf(int row) const
    {
        return static_cast<Qt::CheckState>(list().model()->index(row, 0).data(Qt::CheckStateRole).toInt());
    }
    void select(const QString &name) const
    {
        for (int row = 0; row < list().model()->rowCount(); ++row)
            if (textOfRow(row) == name)
                return list().setCurrentIndex(list().model()->index(row, 0));
        FAIL() << name.toStdString();
    }
    QString summary() const { return find<QLabel>("agentChosenSummary")->text(); }
};

TEST_F(ProposalsTest, areTickedByKeyCarriedOutAndTakenBackByClicks)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=22", "home/Downloads/c.txt=3"});
    show({movingPdfs()});
    const std::string before = snapshot();
    scan();
    ASSERT_EQ(list().model()->rowCount(), 3);
    EXPECT_EQ(textOfRow(0), QStringLiteral("Verschieben"));
    select(QStringLiteral("b.pdf"));
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(tickOf(list().currentIndex().row()), Qt::Unchecked);
    EXPECT_EQ(tickOf(0), Qt::PartiallyChecked);
    EXPECT_TRUE(summary().startsWith(QStringLiteral("1 von 2 ausgewählt")));

    click("agentExecute");
    ASSERT_TRUE(settled());
    EXPECT_TRUE(tree().has("home/Dokumente/Rechnungen/a.pdf"));
    EXPECT_TRUE(tree().has("home/Downloads/b.pdf"));
    EXPECT_EQ(list().model()->rowCount(), 2) << "the other one stays";

    QTest::keyClick(view, Qt::Key_Escape);
    click("cardHistory");
    click("runDisclosure");
    EXPECT_TRUE(find("runSteps"));
    click("runUndo");
    ASSERT_TRUE(settled());
    EXPECT_EQ(snapshot(), before);
    EXPECT_TRUE(find("runUndone"));
    EXPECT_FALSE(find("runUndo"));
}

TEST_F(ProposalsTest, keepTheirTicksUnderAFilter)
{
    tree().lines({"home/Downloads/Miete.pdf=1", "home/Downloads/Strom.pdf=2", "home/Downloads/Strom2.pdf=3"});
    show({movingPdfs()});
    scan();
    QTest::keyClicks(find<QLineEdit>("agentFilter"), QStringLiteral("STROM"));
    ASSERT_EQ(list().model()->rowCount(), 3);
    EXPECT_TRUE(summary().contains(QStringLiteral("davon 1 ausgeblendet"))) << summary().toStdString();
    // The group's tick applies to visible rows only.
    list().setCurrentIndex(list().model()->index(0, 0));
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(agent->chosen.get().size(), 1U);
    click("agentDiscardUnticked");
    EXPECT_EQ(agent->proposals.get().size(), 1U);
    EXPECT_TRUE(find("agentEmpty")) << "nothing fits any more, and the list says so";
    find<QLineEdit>("agentFilter")->clear();
    EXPECT_EQ(textOfRow(1), QStringLiteral("Miete.pdf"));
    EXPECT_EQ(tickOf(1), Qt::Checked);
}

TEST_F(ProposalsTest, offerTheWayBackAndTheirFoldersAfterARun)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=22"});
    show({movingPdfs()});
    const std::string before = snapshot();
    scan();
    EXPECT_FALSE(find("agentUndoRun"));
    click("agentExecute");
    ASSERT_TRUE(settled());
    QSignalSpy wanted(view, &AgentView::showRequested);
    click("agentShowFolders");
    ASSERT_EQ(wanted.count(), 1);
    EXPECT_EQ(wanted[0][0].value<Location>().parent_path(), home("Dokumente/Rechnungen"));
    click("agentUndoRun");
    ASSERT_TRUE(settled());
    EXPECT_EQ(snapshot(), before);
    EXPECT_FALSE(find("agentUndoRun"));
    EXPECT_FALSE(find("agentShowFolders"));
}

TEST_F(ProposalsTest, thatWereDiscardedComeBackWithTheHiddenOnes)
{
    tree().lines({"home/Downloads/Miete.pdf=1", "home/Downloads/Strom.pdf=2", "home/Downloads/Wasser.pdf=3"});
    show({movingPdfs()});
    scan();
    const std::vector<AgentProposal> before = agent->proposals.get();
    for (const char16_t *name : {u"Miete.pdf", u"Strom.pdf"}) {
        select(QString::fromUtf16(name));
        QTest::keyClick(&list(), Qt::Key_Space);
    }
    QTest::keyClicks(find<QLineEdit>("agentFilter"), QStringLiteral("strom"));
    click("agentDiscardUnticked");
    EXPECT_EQ(agent->status.get(), QStringLiteral("2 Vorschläge verworfen, davon 1 ausgeblendet."));
    ASSERT_EQ(agent->proposals.get().size(), 1U);
    find<QLineEdit>("agentFilter")->clear();
    select(QStringLiteral("Wasser.pdf"));
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_TRUE(find("agentEmpty"));

    click("agentBringBack");
    EXPECT_EQ(tickOf(1), Qt::Checked) << "Wasser.pdf, as it was";
    click("agentBringBack");
    EXPECT_EQ(agent->status.get(), QStringLiteral("2 Vorschläge sind wieder da."));
    EXPECT_EQ(agent->proposals.get(), before);
    EXPECT_EQ(agent->chosen.get().size(), 1U);
    EXPECT_FALSE(find("agentBringBack"));
}

TEST_F(ProposalsTest, ofAnAnalysisNameItsFolder)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Sammlung/a.txt=gleich", "home/Sammlung/b.txt=gleich"});
    show({movingPdfs()});
    scan();
    EXPECT_FALSE(find("agentListedFolder"));
    agent->analyze(home("Sammlung"));
    ASSERT_TRUE(settled());
    ASSERT_TRUE(find<QLabel>("agentListedFolder"));
    EXPECT_TRUE(find<QLabel>("agentListedFolder")->text().endsWith(QStringLiteral("Sammlung")));
    scan();
    EXPECT_FALSE(find("agentListedFolder"));
}

TEST_F(ProposalsTest, keepTheCurrentRowWhenOthersComeAndGo)
{
    for (int number = 0; number < 300; ++number)
        tree().file("home/Downloads/" + std::to_string(1000 + number) + ".pdf", std::to_string(number));
    show({movingPdfs()});
    scan();
    ASSERT_EQ(list().model()->rowCount(), 301);
    list().setCurrentIndex(list().model()->index(200, 0));
    const QString current = textOfRow(200);
    QSignalSpy resets(list().model(), &QAbstractItemModel::modelReset);
    agent->discard({list().proposals().at(10).proposal->id, list().proposals().at(11).proposal->id,
                    list().proposals().at(250).proposal->id});
    EXPECT_EQ(list().currentIndex().data().toString(), current);
    tree().file("home/Downloads/0999.pdf", "new");
    scan();
    EXPECT_EQ(list().model()->rowCount(), 302);
    EXPECT_EQ(list().currentIndex().data().toString(), current);
    EXPECT_EQ(resets.count(), 0);

    // Even if so much is removed that the model resets, the current row stays in place.
    const int row = list().currentIndex().row();
    list().scrollTo(list().model()->index(row - 100, 0), QListView::PositionAtTop);
    const QString top = textOfRow(row - 100);
    std::set<QUuid> everySecond;
    for (int other = (row + 1) % 2 == 0 ? 2 : 1; other < list().model()->rowCount(); other += 2)
        everySecond.insert(list().proposals().at(other).proposal->id);
    agent->discard(everySecond);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(list().currentIndex().data().toString(), current);
    EXPECT_EQ(list().indexAt(QPoint(list().viewport()->width() / 2, 2)).data().toString(), top);
}

TEST_F(ProposalsTest, thatFailStayUntickedWithTheirReason)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=2"});
    show({movingPdfs()});
    scan();
    tree().file("home/Downloads/a.pdf", "changed since the scan");
    click("agentExecute");
    ASSERT_TRUE(settled());
    ASSERT_EQ(list().model()->rowCount(), 2);
    EXPECT_EQ(tickOf(1), Qt::Unchecked);
    const QString spoken = list().model()->index(1, 0).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(spoken.contains(agent->failures.get().begin()->second)) << spoken.toStdString();
    EXPECT_FALSE(find<QAbstractButton>("agentExecute")->isEnabled());
}

TEST_F(ProposalsTest, ofDuplicatesCanBeTurnedRoundInThePreview)
{
    tree().lines({"home/Downloads/erste.pdf=same", "home/Downloads/zweite.pdf=same"});
    tree().age("home/Downloads/erste.pdf", clock.time - std::chrono::days(9));
    show({});
    scan();
    ASSERT_EQ(agent->proposals.get().size(), 1U);
    const Location goes = agent->proposals.get().front().source;
    list().setCurrentIndex(list().model()->index(1, 0));
    QTest::keyClick(&list(), Qt::Key_Return);
    ASSERT_TRUE(find("agentPreview"));
    click("previewKeepInstead");
    ASSERT_EQ(agent->proposals.get().size(), 1U);
    EXPECT_EQ(agent->proposals.get().front().keptCopy, goes);
    QTest::keyClick(find("agentPreview"), Qt::Key_Escape);
    EXPECT_FALSE(find("agentPreview"));
}

TEST_F(ProposalsTest, notWantedAnyMoreComeBackOnlyThroughTheSettings)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    scan();
    list().setCurrentIndex(list().model()->index(1, 0));
    QTest::keyClick(&list(), Qt::Key_Return);
    click("previewNever");
    EXPECT_FALSE(find("agentPreview")) << "its proposal is gone";
    scan();
    EXPECT_TRUE(find("agentEmpty"));
    view->showStart();
    click("agentSettings");
    click("neverAgain");
    EXPECT_TRUE(agent->never.get().empty());
    click("settingsDone");
    scan();
    EXPECT_EQ(list().model()->rowCount(), 2);
}

TEST_F(ProposalsTest, areReportedForTheAnalysedFolderOnlyWhileTheyAreItsOwn)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Ordner/x.txt=same", "home/Ordner/y.txt=same"});
    show({movingPdfs()});
    view->analyze(home("Ordner"));
    ASSERT_TRUE(settled());
    // Workers write the report and hand it over.
    const auto handedOver = [this] { return !desktop.copied.isEmpty(); };
    click("agentHandOver");
    ASSERT_TRUE(waitUntil(handedOver));
    EXPECT_TRUE(desktop.copied.contains(shown(home("Ordner")))) << desktop.copied.toStdString();
    scan();
    desktop.copied.clear();
    click("agentHandOver");
    ASSERT_TRUE(waitUntil(handedOver));
    EXPECT_FALSE(desktop.copied.contains(shown(home("Ordner")))) << desktop.copied.toStdString();
}

} // namespace

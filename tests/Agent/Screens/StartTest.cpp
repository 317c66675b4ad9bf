#include "Agent/AgentKeys.h"
#include "Agent/Screens/GuideTexts.h"
#include "Agent/Screens/RunRow.h"
#include "Agent/Screens/ScreenWorld.h"
#include "Guard/GuardKeys.h"
#include "Runs/RunKeys.h"
#include "Support/ClosedFolders.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

using namespace brellin;
using namespace brellin::test;

namespace {

class AgentStartTest : public ScreenWorld {
protected:
    QString spoken(const char *name) const { return find(name)->accessibleName(); }
};

TEST_F(AgentStartTest, countsLiveAndLeadsToTheAreas)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    EXPECT_EQ(spoken("cardCleanup"), QStringLiteral("Aufräumen: 0 Vorschläge"));
    QSignalSpy paths(view, &AgentView::pathChanged);
    scan();
    EXPECT_EQ(view->path(), QStringLiteral("Aufräum-Agent › Aufräumen"));
    EXPECT_EQ(paths.count(), 1);
    click("agentBack");
    EXPECT_EQ(view->path(), QStringLiteral("Aufräum-Agent"));
    EXPECT_EQ(spoken("cardCleanup"), QStringLiteral("Aufräumen: 1 Vorschlag"));

    const std::pair<const char *, QString> cards[] = {{"cardPhotos", QStringLiteral("Fotos & Videos")},
                                                      {"cardReceipts", QStringLiteral("Belege aus Mail")},
                                                      {"cardProjects", QStringLiteral("Projekte")},
                                                      {"cardHistory", QStringLiteral("Verlauf")}};
    for (const auto &[card, title] : cards) {
        find(card)->setFocus();
        QTest::keyClick(find(card), Qt::Key_Return);
        EXPECT_EQ(view->path(), QStringLiteral("Aufräum-Agent › ") + title);
        QTest::keyClick(view, Qt::Key_Escape);
    }
    click("cardRecipes");
    click("sheetDone");
    EXPECT_EQ(view->path(), QStringLiteral("Aufräum-Agent"));
}

TEST_F(AgentStartTest, namesTheFoldersThatAScanCouldNotRead)
{
    tree().lines({"home/Downloads/zu/a.pdf=1", "home/Downloads/auch zu/b.pdf=2"});
    CleanupRule everywhere = movingPdfs();
    everywhere.includeSubfolders = true;
    show({everywhere});
    const auto look = [this] { agent->scan(CleanupAgent::Search::Rules, CleanupAgent::ScanPurpose::ProposeOnly); };
    wait(*agent, look);
    EXPECT_FALSE(find("agentDetails"));
    {
        const ClosedFolders closed(tree(), {"home/Downloads/zu", "home/Downloads/auch zu"});
        if (!closed)
            GTEST_SKIP() << "privileges cannot be dropped";
        wait(*agent, look);
    }
    EXPECT_EQ(agent->status.get(), QStringLiteral("1 Regel aktiv · 0 Dateien geprüft · 0 doppelt · 0 Vorschläge"));
    click("agentDetails");
    ASSERT_TRUE(find("detailsSheet"));
    EXPECT_EQ(spoken("detailsSheet"), QStringLiteral("2 Ordner nicht lesbar"));
    QStringList texts;
    for (const QLabel *const label : find("detailsSheet")->findChildren<QLabel *>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(shown(home("Downloads/auch zu")) + u'\n' + shown(home("Downloads/zu"))))
        << texts.join(u'|').toStdString();
    click("detailsClose");
    EXPECT_FALSE(find("detailsSheet"));

    // The next operation says nothing of them.
    wait(*agent, look);
    EXPECT_FALSE(find("agentDetails"));
}

TEST_F(AgentStartTest, takesTheRedNumberAwayWhenItIsSeen)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    window->hide();
    wait(*agent, [this] { agent->scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(agent->newSinceViewed.get(), 1);
    window->show();
    EXPECT_EQ(agent->newSinceViewed.get(), 0);
}

TEST_F(AgentStartTest, keepsTheTimerFromPullingAwayWhatIsLookedAt)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    const auto tickScans = [this] {
        clock.time += std::chrono::hours(100);
        agent->tick();
        const bool scans = agent->running.get();
        return settled() && scans;
    };
    scan();
    EXPECT_FALSE(tickScans()) << "proposals are in front";
    click("agentBack");
    EXPECT_TRUE(tickScans());
    click("agentSettings");
    EXPECT_FALSE(tickScans()) << "a sheet is open";
    click("settingsDone");
    EXPECT_TRUE(tickScans());
}

TEST_F(AgentStartTest, countsWhatAnyOfTwoWindowsShows)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    QWidget other;
    other.resize(1064, 748);
    auto second = std::make_unique<AgentView>(AgentPorts{*agent, *model, services(), desktop, desktop}, &other);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    click("agentSettings");
    other.hide();
    clock.time += std::chrono::hours(100);
    agent->tick();
    EXPECT_FALSE(agent->running.get()) << "the first window has a sheet open";
    click("settingsDone");
    wait(*agent, [this] { agent->scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(agent->newSinceViewed.get(), 0) << "the first window shows them";
    // Closing a window ends its attention.
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    second->openSheet(AgentSheet::Settings);
    window->hide();
    second.reset();
    clock.time += std::chrono::hours(100);
    tree().file("home/Downloads/b.pdf", "2");
    wait(*agent, [this] { agent->tick(); });
    EXPECT_EQ(agent->newSinceViewed.get(), 1);
}

TEST_F(AgentStartTest, reportsOnTheFolderWhoseProposalsAreListed)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Ablage/b.pdf=2", "home/Anderes/c.pdf=3"});
    show({movingPdfs()});
    const auto reported = [this] {
        desktop.copied.clear();
        view->open(AgentArea::Cleanup);
        click("agentHandOver");
        EXPECT_TRUE(waitUntil([this] { return !desktop.copied.isEmpty(); }));
        return desktop.copied;
    };
    view->analyze(home("Ablage"));
    ASSERT_TRUE(settled());
    agent->scan(CleanupAgent::Search::Rules);
    agent->cancel();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(reported().contains(u"/Ablage"_qs)) << desktop.copied.toStdString();
    view->analyze(home("Anderes"));
    agent->cancel();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(reported().contains(u"/Ablage"_qs)) << desktop.copied.toStdString();
    wait(*agent, [this] { agent->scan(CleanupAgent::Search::Rules); });
    EXPECT_FALSE(reported().contains(u"/Ablage"_qs)) << desktop.copied.toStdString();
}

TEST_F(AgentStartTest, saysTidyOnlyAfterHavingLooked)
{
    show({movingPdfs()});
    view->open(AgentArea::Cleanup);
    const auto says = [this](const QString &text) {
        for (const QLabel *const label : find("agentEmpty")->findChildren<QLabel *>())
            if (label->isVisible() && label->text() == text)
                return true;
        return false;
    };
    EXPECT_TRUE(says(QStringLiteral("Keine Vorschläge.")));
    scan();
    EXPECT_TRUE(says(QStringLiteral("Alles aufgeräumt")));
}

TEST_F(AgentStartTest, asksForTheFolderToAnalyse)
{
    tree().lines({"home/Ordner/x.txt=same", "home/Ordner/y.txt=same"});
    answer = home("Ordner");
    show({});
    click("agentAnalyze");
    EXPECT_EQ(asked, QStringLiteral("Welchen Ordner aufräumen?"));
    ASSERT_TRUE(settled());
    EXPECT_FALSE(agent->proposals.get().empty());
    EXPECT_EQ(view->area(), AgentArea::Cleanup);
}

TEST_F(AgentStartTest, namesWhatAnUndoCouldNotPutBack)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=2"});
    show({movingPdfs()});
    scan();
    click("agentExecute");
    ASSERT_TRUE(settled());
    std::filesystem::remove(home("Dokumente/Rechnungen/a.pdf"));
    view->open(AgentArea::History);
    click("runUndo");
    ASSERT_TRUE(settled());
    const auto *const missing = find<QLabel>("runNotRestored");
    ASSERT_TRUE(missing);
    EXPECT_TRUE(missing->text().contains(QStringLiteral("a.pdf (Downloads)"))) << missing->text().toStdString();
    EXPECT_FALSE(missing->text().contains(QStringLiteral("b.pdf")));
    // It is back: the remaining step can be retried alone.
    tree().file("home/Dokumente/Rechnungen/a.pdf", "neuer");
    click("runRetry");
    ASSERT_TRUE(settled());
    EXPECT_EQ(tree().content("home/Downloads/a.pdf"), "neuer");
    EXPECT_FALSE(find("runNotRestored") || find("runRetry"));
    const auto *const remarks = find<QLabel>("runRemarks");
    ASSERT_TRUE(remarks);
    EXPECT_EQ(remarks->text(), QStringLiteral("• a.pdf: Inzwischen geändert, so kam es zurück."));
}

TEST_F(AgentStartTest, namesTheRunsThatFellOutOfTheHistory)
{
    show({});
    view->open(AgentArea::History);
    EXPECT_FALSE(find("droppedRuns"));
    // Another process added a run that was too large to keep the previous one.
    const DroppedRun gone{QUuid::createUuid(), instantFrom(timespec{.tv_sec = 1'790'000'000, .tv_nsec = 0}), 41'000};
    ASSERT_TRUE(DroppedRun::note(defaults(), {gone}, RunHistory::longest));
    agent->reload({RunKeys::dropped});
    ASSERT_TRUE(waitUntil([this] { return find("droppedRuns") != nullptr; }));
    EXPECT_EQ(find<QLabel>("droppedRuns")->text(), textOf({gone}));
    EXPECT_TRUE(textOf({gone}).contains(QStringLiteral("41.000 Schritte")));
}

TEST_F(AgentStartTest, namesTheVolumeThatIsAwayInTheRunsRow)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    CleanupRule rule = movingPdfs();
    rule.targetPath = textOf(disk("Papiere"));
    show({rule});
    scan();
    click("agentExecute");
    ASSERT_TRUE(settled());
    const std::string after = snapshot();
    std::filesystem::rename(tree().path("disk"), tree().path("anderswo"));
    view->open(AgentArea::History);
    click("runUndo");
    ASSERT_TRUE(settled());
    const auto *const told = find<QLabel>("runNotUndone");
    ASSERT_TRUE(told);
    EXPECT_EQ(told->text(), QStringLiteral("Das Laufwerk „disk“ ist nicht angeschlossen. Es wurde nichts geändert."));
    EXPECT_FALSE(find("runUndone"));
    std::filesystem::rename(tree().path("anderswo"), tree().path("disk"));
    EXPECT_EQ(snapshot(), after);
    // With the volume mounted again, undo works.
    click("runUndo");
    ASSERT_TRUE(settled());
    EXPECT_FALSE(find("runNotUndone"));
    EXPECT_TRUE(find("runUndone"));
    EXPECT_EQ(tree().content("home/Downloads/a.pdf"), "1");
}

TEST_F(AgentStartTest, namesADamagedListAndOffersAWayOut)
{
    tree().lines({"home/Downloads/a.pdf=1"});
    show({movingPdfs()});
    EXPECT_FALSE(find("damageNotice"));
    const Location file = tree().path("settings/agentRules.json");
    const auto cut = [&] { std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3); };
    cut();
    scan();
    EXPECT_TRUE(agent->proposals.get().empty());
    click("agentBack");
    const auto *const text = find<QLabel>("damageText");
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->text().contains(QStringLiteral("„agentRules.json“"))) << text->text().toStdString();
    EXPECT_FALSE(find("agentStatus")) << "once is enough";
    click("damageRestore");
    ASSERT_TRUE(waitUntil([this] { return !find("damageNotice"); }));
    EXPECT_EQ(agent->rules.get().front().name, movingPdfs().name);

    cut();
    agent->reload({AgentKeys::rules});
    ASSERT_TRUE(waitUntil([this] { return find("damageBeginAnew") != nullptr; }));
    click("damageBeginAnew");
    click("cancel");
    EXPECT_TRUE(find("damageNotice")) << "asked first";
    click("damageBeginAnew");
    click("accept");
    ASSERT_TRUE(waitUntil([this] { return !find("damageNotice"); }));
    EXPECT_EQ(agent->rules.get().size(), 10U);

    // A history with damaged runs shows the others, but allows no analysis.
    tree().file("settings/agentHistory.json", R"([{"id":"kaputt"},{"steps":[]}])");
    agent->reload({RunKeys::history});
    ASSERT_TRUE(waitUntil([this] { return find("damageConsequence") != nullptr; }));
    EXPECT_TRUE(find<QLabel>("damageConsequence")->text().contains(QStringLiteral("analysiert")));

    // The number of projects is unknown.
    tree().file("settings/agentProfiles.json", "[{");
    agent->reload({GuardKeys::profiles});
    EXPECT_TRUE(waitUntil([this] { return spoken("cardProjects").endsWith(QStringLiteral("nicht bekannt")); }));
}

TEST_F(AgentStartTest, saysWhichSettingCouldNotBeStored)
{
    show({});
    std::filesystem::remove(tree().path("settings/settings.json"));
    tree().folder("settings/settings.json");
    click("agentSettings");
    click("settingsAutoDuplicates");
    EXPECT_FALSE(find<QCheckBox>("settingsAutoDuplicates")->isChecked());
    EXPECT_TRUE(find("settingsProblem"));
    auto *const interval = find<QComboBox>("settingsInterval");
    interval->setFocus();
    QTest::keyClick(interval, Qt::Key_Home);
    EXPECT_EQ(interval->currentText(), QStringLiteral("Täglich"));
}

TEST_F(AgentStartTest, settingsAreStoredAtOnce)
{
    show({});
    click("agentSettings");
    auto *const interval = find<QComboBox>("settingsInterval");
    ASSERT_TRUE(interval);
    EXPECT_EQ(interval->currentText(), QStringLiteral("Täglich"));
    interval->setFocus();
    QTest::keyClick(interval, Qt::Key_Home);
    EXPECT_EQ(agent->intervalHours.get(), 0);
    click("settingsAutoDuplicates");
    EXPECT_TRUE(agent->autoDuplicates.get());
    click("settingsRemoveFolder");
    EXPECT_TRUE(agent->duplicateFolders.get().empty());
    ASSERT_TRUE(waitUntil([this] { return !model->checking.get(); }));
    // An address on another machine is refused with a message.
    find<QLineEdit>("modelAddress")->setText(QStringLiteral("http://example.org:8080"));
    click("modelUse");
    EXPECT_TRUE(model->endpoint.get().isEmpty());
    EXPECT_FALSE(model->error.get().isEmpty());
}

TEST(AgentGuideTest, namesNothingOfTheOtherSystem)
{
    for (const GuideSection &section : guideSections(TextSystem::Linux))
        for (const char16_t *word : {u"Mac", u"Apple", u"⌘", u"Library", u"Finder"})
            EXPECT_FALSE(section.text.contains(QString::fromUtf16(word))) << section.text.toStdString();
    ASSERT_EQ(guideSections(TextSystem::Mac).size(), guideSections(TextSystem::Linux).size());
    EXPECT_TRUE(guideSections(TextSystem::Mac).front().text.contains(QStringLiteral("Apple Intelligence")));
}

} // namespace

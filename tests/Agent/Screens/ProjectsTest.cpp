#include "Agent/Screens/ProfileEditor.h"
#include "Agent/Screens/ProjectsPage.h"
#include "Agent/Screens/ScreenWorld.h"
#include "Guard/GuardKeys.h"
#include "Look/Labels.h"

#include <QLabel>
#include <QLineEdit>

using namespace brellin;
using namespace brellin::test;

namespace {

class ProjectsTest : public ScreenWorld {
protected:
    void SetUp() override
    {
        tree().lines({"home/Website/.git/config=x", "home/Website/package.json={}", "home/Website/lose.txt=1"});
        show({});
    }
};

TEST_F(ProjectsTest, areNotTidiedBeforeTheirProfileIsConfirmed)
{
    view->analyze(home("Website"));
    ASSERT_TRUE(settled());
    auto *const editor = find<ProfileEditor>("profileEditor");
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->accessibleName(), QStringLiteral("Software-Projekt erkannt: „Website“"));
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_FALSE(agent->pendingProfile.get());
    EXPECT_TRUE(agent->profiles.get().empty());
    EXPECT_TRUE(agent->status.get().startsWith(QStringLiteral("Abgebrochen")));

    view->analyze(home("Website"));
    ASSERT_TRUE(settled());
    find<QLineEdit>("profileGroups")->setText(QStringLiteral(" Papier, , Bilder"));
    QTest::keyClick(find("profileEditor"), Qt::Key_Escape);
    EXPECT_TRUE(agent->pendingProfile.get()) << "still asked for";
    click("cancel");
    click("profileTidy");
    click("profileSave");
    ASSERT_TRUE(settled());
    ASSERT_EQ(agent->profiles.get().size(), 1U);
    const FolderProfile &stored = agent->profiles.get().front();
    EXPECT_TRUE(stored.tidyAllowed);
    EXPECT_EQ(stored.groups, (std::vector<QString>{QStringLiteral("Papier"), QStringLiteral("Bilder")}));
    EXPECT_TRUE(stored.isProtected(home("Website/.git")));
}

TEST_F(ProjectsTest, areAskedAboutInOneWindowAndWhenItGoesInAnother)
{
    QWidget otherWindow;
    auto *const other = new AgentView({*agent, *model, services(), desktop, desktop}, &otherWindow);
    otherWindow.resize(window->size());
    other->resize(otherWindow.size());
    otherWindow.show();
    const auto asks = [](const QWidget &one) {
        const auto *const editor = one.findChild<ProfileEditor *>();
        return editor && editor->isVisible();
    };
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    view->analyze(home("Website"));
    ASSERT_TRUE(settled());
    ASSERT_TRUE(find<ProfileEditor>("profileEditor"));
    otherWindow.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&otherWindow));
    EXPECT_FALSE(asks(otherWindow)) << "what was typed in the first stays there";
    window.reset();
    EXPECT_TRUE(waitUntil([&] { return asks(otherWindow); }));
    agent->cancelPendingProfile();
    EXPECT_TRUE(waitUntil([&] { return !asks(otherWindow); })) << "answered elsewhere";
}

TEST_F(ProjectsTest, areProtectedEditedAndFreedWithAWayBack)
{
    view->open(AgentArea::Projects);
    auto *const page = view->findChild<ProjectsPage *>();
    page->protect(home("Website"));
    ASSERT_TRUE(waitUntil([this] { return find("profileEditor") != nullptr; }));
    click("profileSave");
    ASSERT_EQ(agent->profiles.get().size(), 1U);
    const FolderProfile first = agent->profiles.get().front();
    EXPECT_FALSE(first.protectedEntries.empty());

    click("profileEdit");
    click("profileEntryRemove");
    click("profileSave");
    EXPECT_EQ(agent->profiles.get().front().protectedEntries.size(), first.protectedEntries.size() - 1);
    ASSERT_TRUE(waitUntil([this] { return find("profileEdit") != nullptr; })) << "the new row";
    click("profileEdit");
    click("profileEntryRemove");
    QTest::keyClick(find("profileEditor"), Qt::Key_Escape);
    click("cancel");
    ASSERT_TRUE(find("profileEditor")) << "goes on where it was";
    click("profileCancel");
    click("accept");
    EXPECT_FALSE(find("profileEditor"));
    EXPECT_EQ(agent->profiles.get().front().protectedEntries.size(), first.protectedEntries.size() - 1);
    const FolderProfile edited = agent->profiles.get().front();

    ASSERT_TRUE(waitUntil([this] { return find("profileRemove") != nullptr; })) << "the new row";
    click("profileRemove");
    EXPECT_TRUE(agent->profiles.get().empty());
    click("profileRemovedAction");
    EXPECT_EQ(agent->profiles.get(), std::vector{edited});
}

TEST_F(ProjectsTest, areStoredAsTheyWereUnlessSomethingIsTyped)
{
    FolderProfile stored;
    stored.rootPath = textOf(home("Website"));
    stored.name = QStringLiteral("Website");
    stored.protectedEntries = {{.path = QStringLiteral(" rand "), .reason = {}}};
    stored.archiveAfterDays = 0;
    stored.suggestDeleteUnusedVideosDays = 5000;
    ASSERT_TRUE(agent->saveProfile(stored));
    view->open(AgentArea::Projects);
    const auto typeAndSave = [this](const QString &path) {
        if (!find("profileEditor"))
            click("profileEdit");
        if (!path.isNull())
            find<QLineEdit>("profileEntryPath")->setText(path);
        click("profileSave");
    };
    typeAndSave({});
    EXPECT_EQ(agent->profiles.get(), std::vector{stored});
    for (const QString &refused : {u"rand "_qs, u"/etc"_qs, u"../anderes"_qs, u"."_qs}) {
        typeAndSave(refused);
        EXPECT_TRUE(find("profileProblem")) << refused.toStdString();
        EXPECT_EQ(agent->profiles.get(), std::vector{stored});
    }
    typeAndSave(textOf(home("Website/.git")));
    EXPECT_FALSE(find("profileEditor"));
    EXPECT_EQ(agent->profiles.get().front().protectedEntries.front().path, u".git"_qs);
}

TEST_F(ProjectsTest, offerTheFoldersEntriesWhereNoneAreProtected)
{
    FolderProfile stored;
    stored.rootPath = textOf(home("Website"));
    ASSERT_TRUE(agent->saveProfile(stored));
    view->open(AgentArea::Projects);
    click("profileEdit");
    ASSERT_TRUE(find("profileNoEntries")) << "says that nothing is protected";
    click("profileNoEntriesAction");
    ASSERT_TRUE(waitUntil([this] { return find("profileEntryPath") != nullptr; }));
    EXPECT_FALSE(find("profileNoEntries"));
    click("profileSave");
    EXPECT_TRUE(agent->profiles.get().front().isProtected(home("Website/.git")));
}

TEST_F(ProjectsTest, areNotSaidToBeNoneWhileTheirListIsDamaged)
{
    FolderProfile profile;
    profile.name = QStringLiteral("Website");
    profile.rootPath = textOf(home("Website"));
    ASSERT_TRUE(agent->saveProfile(profile));
    tree().file("settings/agentProfiles.json", "[{");
    agent->reload({GuardKeys::profiles});
    ASSERT_TRUE(waitUntil([this] { return !agent->damaged.get().empty(); }));
    view->open(AgentArea::Projects);
    auto *const page = view->findChild<ProjectsPage *>();
    EXPECT_TRUE(find("damageNotice"));
    EXPECT_FALSE(page->findChild<EmptyState *>()->isVisible()) << "nobody knows whether there are none";
    EXPECT_FALSE(find("agentProfile"));
    EXPECT_FALSE(find("agentProtect")->isEnabled());
    click("damageRestore");
    ASSERT_TRUE(waitUntil([this] { return find("agentProfile") != nullptr; }));
    EXPECT_FALSE(find("damageNotice"));
}

TEST_F(ProjectsTest, areNotMadeOfTheSystem)
{
    view->open(AgentArea::Projects);
    view->findChild<ProjectsPage *>()->protect("/usr/lib");
    EXPECT_TRUE(find("profileRemoved")) << "says that the system is never touched";
    EXPECT_FALSE(find("profileEditor"));
}

} // namespace

#include "Agent/AgentKeys.h"
#include "Agent/Screens/RuleListModel.h"
#include "Agent/Screens/RuleTrialPane.h"
#include "Agent/Screens/ScreenWorld.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>

#include <memory>

using namespace brellin;
using namespace brellin::test;

namespace {

class RulesTest : public ScreenWorld {
protected:
    CleanupRule named(const char16_t *name) const
    {
        CleanupRule rule = movingPdfs();
        rule.name = QString::fromUtf16(name);
        return rule;
    }
    QStringList names() const
    {
        QStringList all;
        for (const CleanupRule &rule : agent->rules.get())
            all << rule.name;
        return all;
    }
    QListView &list() const { return *find<QListView>("ruleList"); }
    bool trialSays(const QString &part) const
    {
        return waitUntil([&] { return find<QLabel>("trialSummary")->text().contains(part); });
    }
};

TEST_F(RulesTest, areMovedCopiedDeletedAndBroughtBack)
{
    show({named(u"A"), named(u"B"), named(u"C")});
    click("cardCleanupSettings");
    QTest::keyClick(&list(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(names().join(u' '), QStringLiteral("B A C"));
    EXPECT_EQ(list().currentIndex().data().toString(), QStringLiteral("A")) << "the moved rule stays current";
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_FALSE(agent->rules.get()[1].enabled);
    click("ruleDuplicate");
    EXPECT_EQ(names().join(u' '), QStringLiteral("B A Kopie von A C"));
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(names().join(u' '), QStringLiteral("B A C"));
    click("ruleNoticeAction");
    EXPECT_EQ(names().join(u' '), QStringLiteral("B A Kopie von A C"));
}

TEST_F(RulesTest, areNotShownAsTheExamplesWhileTheirListIsDamaged)
{
    show({named(u"A"), named(u"B")});
    click("cardCleanupSettings");
    tree().file("settings/agentRules.json", "[{");
    agent->reload({AgentKeys::rules});
    ASSERT_TRUE(waitUntil([this] { return find("damageNotice") != nullptr; }));
    EXPECT_FALSE(find("ruleList"));
    for (const char *const name : {"ruleEdit", "ruleDuplicate", "ruleRemove", "ruleUp", "ruleDown", "ruleNew"})
        EXPECT_FALSE(find(name)->isEnabled()) << name;
    click("damageRestore");
    ASSERT_TRUE(waitUntil([this] { return find("ruleList") != nullptr; }));
    EXPECT_FALSE(find("damageNotice"));
    EXPECT_EQ(names().join(u' '), QStringLiteral("A B"));
    EXPECT_TRUE(find("ruleEdit")->isEnabled());
}

TEST_F(RulesTest, thatAreNewAreTitledAndSelectedAsSuch)
{
    show({named(u"A"), named(u"B")});
    click("cardCleanupSettings");
    click("ruleNew");
    EXPECT_EQ(find("ruleEditor")->accessibleName(), QStringLiteral("Neue Regel"));
    find<QLineEdit>("ruleName")->setText(QStringLiteral("Neueste"));
    find<QLineEdit>("ruleTarget")->setText(QStringLiteral("~/Dokumente"));
    click("ruleSave");
    ASSERT_FALSE(find("ruleEditor"));
    EXPECT_EQ(list().currentIndex().data().toString(), QStringLiteral("Neueste"));
    click("ruleEdit");
    EXPECT_EQ(find("ruleEditor")->accessibleName(), QStringLiteral("Regel bearbeiten"));
}

TEST_F(RulesTest, areDroppedWhereTheMouseLetsGo)
{
    show({named(u"A"), named(u"B"), named(u"C"), named(u"D")});
    struct Row {
        int dragged;
        int before; ///< the row before which it is dropped; -1: after the last one
        QString order;
    };
    const Row rows[] = {{0, 2, QStringLiteral("B A C D")},
                        {3, 0, QStringLiteral("D B A C")},
                        {0, -1, QStringLiteral("B A C D")},
                        {1, 1, QStringLiteral("B A C D")}};
    RuleListModel dragging(*agent, home(""), nullptr);
    for (const Row &row : rows) {
        const std::unique_ptr<QMimeData> held(dragging.mimeData({dragging.index(row.dragged)}));
        dragging.dropMimeData(held.get(), Qt::MoveAction, row.before, 0, {});
        EXPECT_EQ(names().join(u' '), row.order);
    }
}

TEST_F(RulesTest, showWhatTheyWouldDoWhileTheyAreEdited)
{
    tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=2", "home/Downloads/c.txt=3"});
    show({movingPdfs()});
    click("cardCleanupSettings");
    QTest::keyClick(&list(), Qt::Key_Return);
    ASSERT_TRUE(find("ruleEditor"));
    EXPECT_TRUE(trialSays(QStringLiteral("2 Dateien verschieben")));
    auto *const value = find<QLineEdit>("conditionValue");
    value->selectAll();
    QTest::keyClicks(value, QStringLiteral("txt"));
    EXPECT_TRUE(trialSays(QStringLiteral("1 Datei verschieben")));
    find<RuleTrialPane>("ruleTrial")->explain(home("Downloads/a.pdf"));
    ASSERT_TRUE(waitUntil([this] {
        for (const QLabel *const label : find("ruleTrial")->findChildren<QLabel *>())
            if (label->text().contains(QStringLiteral("die Datei hat „pdf“")))
                return true;
        return false;
    }));
    find<QComboBox>("ruleAction")->setCurrentIndex(static_cast<int>(RuleAction::Trash));
    EXPECT_TRUE(trialSays(QStringLiteral("in den Papierkorb")));
    EXPECT_FALSE(find("ruleTarget"));
    EXPECT_EQ(agent->rules.get().front().action, RuleAction::Move) << "only a copy is edited";
    click("ruleSave");
    EXPECT_EQ(agent->rules.get().front().action, RuleAction::Trash);
    EXPECT_EQ(agent->rules.get().front().conditions.front().value, QStringLiteral("txt"));
    EXPECT_TRUE(tree().has("home/Downloads/c.txt"));
}

TEST_F(RulesTest, areLeftAsTheyWereByACancelledEdit)
{
    show({movingPdfs()});
    const std::vector<CleanupRule> before = agent->rules.get();
    click("cardCleanupSettings");
    click("ruleNew");
    find<QLineEdit>("ruleName")->setText(QStringLiteral("anders"));
    QTest::keyClick(find("ruleEditor"), Qt::Key_Escape);
    ASSERT_TRUE(find("discardQuestion")) << "edits are not lost without a question";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(find("discardQuestion"));
    EXPECT_EQ(find<QLineEdit>("ruleName")->text(), QStringLiteral("anders")) << "Return goes on editing";
    click("ruleCancel");
    click("accept");
    EXPECT_FALSE(find("ruleEditor"));
    EXPECT_TRUE(find("ruleListSheet")) << "only the editor closes";
    EXPECT_EQ(agent->rules.get(), before);
    // A path below the home folder is shortened on display and stored in full.
    click("ruleEdit");
    EXPECT_EQ(find<QLineEdit>("ruleSource")->text(), QStringLiteral("~/Downloads"));
    click("ruleSave");
    EXPECT_EQ(agent->rules.get(), before);
    // A change that was reverted does not count as an edit.
    click("ruleEdit");
    click("ruleSubfolders");
    click("ruleSubfolders");
    QTest::keyClick(find("ruleEditor"), Qt::Key_Escape);
    EXPECT_FALSE(find("discardQuestion"));
    EXPECT_FALSE(find("ruleEditor"));
}

} // namespace

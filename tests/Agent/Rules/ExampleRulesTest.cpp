#include "Agent/Rules/ExampleRules.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>

using namespace brellin;

namespace {

struct Row {
    QString name;
    StandardFolder source;
    QString conditions;
    RuleAction action;
    std::optional<StandardFolder> base;
    QString suffix;
};

QString text(const std::vector<RuleCondition> &conditions)
{
    QStringList parts;
    for (const RuleCondition &one : conditions)
        parts << rawValue(one.kind) + u'=' + one.value;
    return parts.join(u"; ");
}

QStringList names(const std::vector<CleanupRule> &rules)
{
    QStringList list;
    for (const CleanupRule &rule : rules)
        list << rule.name;
    return list;
}

TEST(ExampleRulesTest, AreTheTenOfTheTable)
{
    using enum StandardFolder;
    using enum RuleAction;
    const std::vector<Row> table{
        {u"Bildschirmfotos vom Schreibtisch"_qs, Desktop, u"nameContains=Bildschirmfoto, Screenshot"_qs, Move, Pictures,
         u"/Bildschirmfotos/{Jahr}-{Monat}"_qs},
        {u"Bildschirmaufnahmen (Videos) sammeln"_qs, Desktop,
         u"nameContains=Bildschirmaufnahme, ScreenRecording, Screen Recording"_qs, Move, Movies,
         u"/Bildschirmaufnahmen/{Jahr}-{Monat}"_qs},
        {u"Bilder aus Downloads nach Monat"_qs, Downloads, u"category=Bilder; olderThanDays=3"_qs, Move, Pictures,
         u"/Aus Downloads/{Jahr}-{Monat}"_qs},
        {u"Videos aus Downloads"_qs, Downloads, u"category=Videos; olderThanDays=3"_qs, Move, Movies,
         u"/Aus Downloads/{Jahr}"_qs},
        {u"Rechnungen (PDF) ablegen"_qs, Downloads,
         u"extensionIs=pdf; nameContains=Rechnung, Invoice, Beleg, Quittung"_qs, Move, Documents,
         u"/Rechnungen/{Jahr}"_qs},
        {u"Zahlungsbelege (PDF) ablegen"_qs, Downloads,
         u"extensionIs=pdf; nameContains=Zahlung, Quittung, Kontoauszug, PayPal, Receipt, Überweisung, Lastschrift"_qs,
         Move, Documents, u"/Zahlungsbelege/{Jahr}"_qs},
        {u"Installationsdateien (.dmg/.pkg) nach 14 Tagen weg"_qs,
         Downloads,
         u"extensionIs=dmg, pkg; olderThanDays=14"_qs,
         Trash,
         {},
         {}},
        {u"ZIP-Archive aus Downloads ablegen (30 Tage)"_qs, Downloads, u"category=Archive; olderThanDays=30"_qs, Move,
         Documents, u"/Archiv/{Jahr}"_qs},
        {u"Alte Downloads archivieren (90 Tage)"_qs, Downloads, u"olderThanDays=90"_qs, Move, Documents,
         u"/Archiv/{Jahr}"_qs},
        {u"Dokumente aus Downloads mit KI einsortieren"_qs,
         Downloads,
         u"category=Dokumente; olderThanDays=2"_qs,
         AiSort,
         Documents,
         {}},
    };
    const KnownFolders folders = KnownFolders::ofThisUser();
    const std::vector<CleanupRule> rules = exampleRules(folders);
    ASSERT_EQ(rules.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const CleanupRule &rule = rules[i];
        const Row &row = table[i];
        const QString target = row.base ? textOf(folders.dir(*row.base)) + row.suffix : QString();
        EXPECT_EQ(rule.name, row.name);
        EXPECT_EQ(rule.sourcePath, textOf(folders.dir(row.source))) << i;
        EXPECT_EQ(text(rule.conditions), row.conditions) << i;
        EXPECT_EQ(rule.action, row.action) << i;
        EXPECT_EQ(rule.targetPath, target) << i;
        EXPECT_TRUE(rule.enabled && !rule.automatic && !rule.includeSubfolders) << i;
        EXPECT_EQ(rule.renamePattern, u"{Datum} {Name}"_qs);
    }
}

TEST(ExampleRulesTest, AreAddedOnceBehindTheUsersOwn)
{
    const KnownFolders folders = KnownFolders::ofThisUser();
    std::vector<CleanupRule> stored(3);
    stored[0].name = u"Meine"_qs;
    stored[1].name = u"Dokumente aus Downloads mit KI einsortieren"_qs;
    stored[1].sourcePath = u"/anderswo"_qs;
    stored[2].name = u"Videos aus Downloads"_qs;
    stored[2].enabled = false;
    const std::vector<CleanupRule> completed = withMissingExampleRules(stored, folders);
    ASSERT_EQ(completed.size(), 11U);
    EXPECT_TRUE(std::ranges::equal(stored, completed | std::views::take(3)));
    EXPECT_EQ(completed[3].name, u"Bildschirmfotos vom Schreibtisch"_qs);
    EXPECT_EQ(completed[10].name, u"Alte Downloads archivieren (90 Tage)"_qs);

    const std::vector<CleanupRule> upgraded = upgradedRules(stored, folders);
    EXPECT_EQ(upgraded[1].name, u"Dokumente mit KI einsortieren"_qs);
    EXPECT_EQ(upgraded[1].sourcePath, u"/anderswo"_qs);
    EXPECT_EQ(upgraded[1].id, stored[1].id);
    EXPECT_EQ(upgradedRules(upgraded, folders), upgraded);
    EXPECT_EQ(withMissingExampleRules(upgraded, folders), upgraded) << "known by its second name as well";
    EXPECT_EQ(upgradedRules(upgradedRules({}, folders), folders).size(), 10U);
    EXPECT_EQ(names(upgradedRules({}, folders)).back(), u"Dokumente mit KI einsortieren"_qs);
}

} // namespace

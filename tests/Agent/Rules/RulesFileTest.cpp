#include "Agent/Rules/RulesFile.h"

#include "Support/TempTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using brellin::test::TempTree;

namespace {

/// A rule with the keys that every rule needs, and these.
QByteArray ruleWith(const QByteArray &more)
{
    return R"({"enabled": true, "sourcePath": "~/Downloads", "conditions": [], "action": "move")" + more + '}';
}

QString refusal(const QByteArray &json)
{
    const auto rules = readRules(json);
    return rules ? u"angenommen"_qs : rules.error().message;
}

TEST(RulesFileTest, RefusesWithOneSentence)
{
    EXPECT_EQ(refusal('[' + ruleWith({}) + ',' + ruleWith({}) + R"(, {"name": "Rechnungen", "action": "frobnicate"}])"),
              u"Regel 3 („Rechnungen“): Feld „action“: „frobnicate“ gibt es hier nicht."_qs);
    EXPECT_EQ(refusal(R"([{"conditions": [{}, {"kind": 7}]}])"),
              u"Regel 1: Feld „conditions[1].kind“: hier gehört ein Text hin."_qs);
    EXPECT_EQ(refusal(R"([{"name": 5}])"), u"Regel 1: Feld „name“: hier gehört ein Text hin."_qs);
    EXPECT_EQ(refusal(R"([{"name": "A", "enabled": "ja"}])"),
              u"Regel 1 („A“): Feld „enabled“: hier gehört true oder false hin."_qs);
    EXPECT_EQ(refusal(R"([[]])"), u"Regel 1: hier gehört ein Objekt hin."_qs);
    EXPECT_EQ(refusal(R"({"rules": []})"), u"Die Regeln sind nicht lesbar: hier gehört eine Liste hin."_qs);
    for (const char *const broken : {"", "[{", "null", "[]x", "[{\"name\": \"\xFF\"}]"})
        EXPECT_TRUE(refusal(broken).startsWith(u"Die Regeln sind nicht lesbar: das ist kein gültiges JSON")) << broken;
}

/// Without its conditions a rule would take every file, and a profile without its entries would protect none.
TEST(RulesFileTest, RefusesWhatLacksADecisiveField)
{
    for (const char16_t *const key : {u"enabled", u"sourcePath", u"conditions", u"action"}) {
        QJsonObject rule = QJsonDocument::fromJson(ruleWith(R"(, "name": "A", "automatic": true)")).object();
        rule.remove(QStringView(key));
        EXPECT_EQ(refusal(QJsonDocument(QJsonArray{rule}).toJson()),
                  u"Regel 1 („A“): Feld „%1“: fehlt."_qs.arg(QStringView(key)));
    }
    EXPECT_EQ(refusal('[' + ruleWith(R"(, "conditions": [{"kind": "nameContains"}])") + ']'),
              u"Regel 1: Feld „conditions[0].value“: fehlt."_qs);
    EXPECT_EQ(readProfiles(R"([{"name": "Werk", "rootPath": "/home/anna/Werk"}])").error().message,
              u"Profil 1 („Werk“): Feld „protected“: fehlt."_qs);
}

TEST(RulesFileTest, RefusesProfilesWhoseEntriesProtectNothing)
{
    const TempTree tree;
    tree.lines({"Werk/ rand /x=1"});
    const auto read = [&](const QString &path) {
        FolderProfile profile;
        profile.name = u"Werk"_qs;
        profile.rootPath = textOf(tree.path("Werk"));
        profile.protectedEntries = {{.path = path, .reason = {}}};
        const auto profiles = readProfiles(writeProfiles({profile}));
        return profiles ? profiles->front().protectedEntries.front().path : profiles.error().message;
    };
    const std::vector<std::pair<QString, QString>> rows = {
        {u"fest"_qs, u"fest"_qs},
        {u"tief//fest/"_qs, u"tief/fest"_qs},
        {u"tief/../fest"_qs, u"fest"_qs},
        {textOf(tree.path("Werk/fest")), u"fest"_qs},
        {u" rand "_qs, u" rand "_qs}, // blanks that are part of the name
        {u"rand "_qs, u"„rand “ beginnt oder endet mit einem Leerzeichen und schützt so nichts."_qs},
        {u"/fest"_qs, u"„/fest“ liegt nicht in diesem Projekt."_qs},
        {u"../fest"_qs, u"„../fest“ liegt nicht in diesem Projekt."_qs},
        {u"fest/.."_qs, u"„fest/..“ ist kein Eintrag in diesem Projekt."_qs},
        {u""_qs, u"„“ ist kein Eintrag in diesem Projekt."_qs},
    };
    for (const auto &[written, outcome] : rows) {
        const QString found = read(written);
        EXPECT_TRUE(found == outcome || found == u"Profil 1 („Werk“): Feld „protected“: "_qs + outcome)
            << found.toStdString();
    }
}

TEST(RulesFileTest, ReadsWhatItWroteAndWhatIsMissing)
{
    CleanupRule rule;
    rule.name = u"Überweisung „bar“"_qs;
    rule.sourcePath = u"/home/ä"_qs;
    rule.conditions = {{.kind = ConditionKind::OlderThanDays, .value = u"1,5"_qs}};
    rule.action = RuleAction::AiSort;
    rule.automatic = true;
    const std::vector<CleanupRule> rules{rule, CleanupRule()};
    EXPECT_EQ(readRules(writeRules(rules)), rules);
    EXPECT_TRUE(writeRules(rules).contains("\n    ")) << "for people";
    EXPECT_EQ(readRules("\xEF\xBB\xBF[]").value().size(), 0U);

    const auto read = readRules('[' + ruleWith(R"(, "name": "", "unbekannt": 1, "renamePattern": null)") + ']');
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->front().name, QString());
    EXPECT_EQ(read->front().renamePattern, u"{Datum} {Name}"_qs);
    EXPECT_TRUE(read->front().enabled);
}

TEST(RulesFileTest, GivesACopiedRuleItsOwnId)
{
    const QByteArray one = ruleWith(R"(, "id": "11111111-2222-3333-4444-555555555555", "conditions":
        [{"id": "21111111-2222-3333-4444-555555555555", "kind": "nameContains", "value": "x"}])");
    const auto read = readRules('[' + one + ',' + one + ']');
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->at(0).id, QUuid::fromString(u"11111111-2222-3333-4444-555555555555"_qs));
    EXPECT_NE(read->at(0).id, read->at(1).id);
    EXPECT_NE(read->at(0).conditions[0].id, read->at(1).conditions[0].id);
}

} // namespace

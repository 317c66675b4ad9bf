#include "MailScanner/MailRule.h"
#include "MailScanner/MailRuleJson.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

MailRule rule(const QString &keywords, const QString &senders, const std::optional<QString> &exclude = {})
{
    MailRule made;
    made.keywords = keywords;
    made.senders = senders;
    made.exclude = exclude;
    return made;
}

const MailRule *firstMatch(const std::vector<MailRule> &rules, const QString &subject, const QString &sender = {})
{
    const auto found = std::ranges::find_if(rules, [&](const MailRule &one) { return one.matches(subject, sender); });
    return found == rules.end() ? nullptr : &*found;
}

QStringList namesOf(const std::vector<MailRule> &rules)
{
    QStringList names;
    for (const MailRule &one : rules)
        names << one.name;
    return names;
}

} // namespace

TEST(MailRuleTest, needsAWordOfEachListItHas)
{
    const MailRule both = rule(u"Rechnung, Invoice"_qs, u"paypal"_qs);
    EXPECT_TRUE(both.matches(u"Ihre RECHNUNG 123"_qs, u"PayPal <service@paypal.de>"_qs));
    EXPECT_FALSE(both.matches(u"Ihre Zahlung"_qs, u"PayPal <service@paypal.de>"_qs));
    EXPECT_FALSE(both.matches(u"Rechnung"_qs, u"stadtwerke"_qs));
    EXPECT_TRUE(rule(u"Rechnung"_qs, {}).matches(u"RECHNUNG"_qs, {}));
    EXPECT_FALSE(rule(u" , ,"_qs, u","_qs).matches(u"Rechnung"_qs, u"paypal"_qs)) << "nothing is looked for";
}

TEST(MailRuleTest, comparesWordsWhateverTheirUnicodeFormAndCase)
{
    const MailRule transfers = rule(u"Überweisung"_qs, {});
    EXPECT_TRUE(transfers.matches(u"Ihre U\u0308BERWEISUNG"_qs, {}));
    EXPECT_TRUE(rule(u"U\u0308berweisung"_qs, {}).matches(u"überweisung"_qs, {}));
}

TEST(MailRuleTest, excludesBySubjectOnly)
{
    const MailRule payments = rule(u"Zahlung"_qs, {}, u"abgelehnt, Erinnerung"_qs);
    EXPECT_FALSE(payments.matches(u"Zahlung Abgelehnt"_qs, {}));
    EXPECT_TRUE(payments.matches(u"Zahlung erhalten"_qs, u"Erinnerung GmbH"_qs));
}

TEST(MailRuleTest, defaultRulesTakeTheFirstThatMatches)
{
    const std::vector<MailRule> rules = defaultRules("/home/u/Dokumente");
    ASSERT_EQ(namesOf(rules), (QStringList{u"PayPal-Zahlungen"_qs, u"Zahlungsbelege"_qs, u"Rechnungen"_qs}));
    EXPECT_EQ(firstMatch(rules, u"Rechnung zu Ihrer Bestellung"_qs, u"service@paypal.de"_qs), &rules[0]);
    EXPECT_EQ(firstMatch(rules, u"Your receipt from Kontor"_qs), &rules[1]);
    EXPECT_EQ(firstMatch(rules, u"Gutschrift 7"_qs), &rules[2]);
    EXPECT_EQ(firstMatch(rules, u"Rechnung: Zahlung fehlgeschlagen"_qs), nullptr);
    EXPECT_EQ(rules[0].target, u"/home/u/Dokumente/Zahlungsbelege/{Jahr}"_qs);
    EXPECT_EQ(rules[2].target, u"/home/u/Dokumente/Rechnungen/{Jahr}"_qs);
}

TEST(MailRuleTest, readsRulesOfEarlierVersionsAndWritesNoAbsentField)
{
    const auto read = fromJsonText<std::vector<MailRule>>(
        R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","enabled":false,"name":"Alt","kind":"zahlung",)"
        R"("keywords":"a","senders":"","target":"/t","automatic":true}])");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->front().kind, MailDocKind::Zahlung);
    EXPECT_EQ(read->front().exclude, std::nullopt);
    EXPECT_EQ(read->front().area, std::nullopt);
    EXPECT_FALSE(toJson(read->front()).toObject().contains(u"area"_qs));
    EXPECT_EQ(decodedList<MailRule>(R"([{"name":"a"},{"name":"b","kind":"quittung"}])").state, StoredState::Damaged)
        << "the mails of a lost rule must not fall to another one";
}

TEST(MailRuleTest, upgradeKeepsTheUsersChoicesAndOwnRules)
{
    MailRule own = rule(u"Strom"_qs, {});
    own.name = u"Strom"_qs;
    std::vector<MailRule> old = {own, defaultRules("/alt")[2], defaultRules("/alt")[0]};
    old[1].enabled = false;
    old[1].automatic = true;
    old[1].target = u"/ablage"_qs;
    old[1].keywords = u"nur dies"_qs;
    const std::vector<MailRule> rules = upgradedMailRules(old, "/neu");
    EXPECT_EQ(namesOf(rules),
              (QStringList{u"PayPal-Zahlungen"_qs, u"Zahlungsbelege"_qs, u"Rechnungen"_qs, u"Strom"_qs}));
    EXPECT_EQ(rules[0].target, u"/alt/Zahlungsbelege/{Jahr}"_qs);
    EXPECT_EQ(rules[1].target, u"/neu/Zahlungsbelege/{Jahr}"_qs);
    EXPECT_FALSE(rules[2].enabled);
    EXPECT_TRUE(rules[2].automatic);
    EXPECT_EQ(rules[2].target, u"/ablage"_qs);
    EXPECT_EQ(rules[2].keywords, defaultRules("/neu")[2].keywords) << "the default's words are brought up to date";
    EXPECT_EQ(rules[3], own);
}

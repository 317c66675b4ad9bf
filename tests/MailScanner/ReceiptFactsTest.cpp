#include "MailScanner/ReceiptFacts.h"

#include <gtest/gtest.h>

using namespace brellin;

TEST(ReceiptFactsTest, trustsNoAnswerThatIsNoAmountOrIsFarFromTheMail)
{
    const auto read = [](const QString &answer) { return readReceiptAnswer(answer, QDate(2026, 3, 15)); };
    EXPECT_EQ(read(u" Kontor | 1.084,20 € | 2026-03-01 \nund mehr"_qs),
              (ReceiptFacts{u"Kontor"_qs, u"1.084,20 €"_qs, QDate(2026, 3, 1)}));
    EXPECT_EQ(read(u"Kontor|-12,00 €|"_qs).amount, u"-12,00 €"_qs);
    EXPECT_EQ(read(u"|EUR 84.20|"_qs).amount, u"EUR 84.20"_qs);
    EXPECT_EQ(read(u"Kontor | siehe Anhang | 01.03.2026"_qs), (ReceiptFacts{u"Kontor"_qs, {}, {}}));
    EXPECT_EQ(read(u"Kontor | 1,00 € rm -rf | "_qs).amount, QString());
    EXPECT_EQ(read(u"||2026-04-15"_qs).date, QDate(2026, 4, 15));
    EXPECT_EQ(read(u"||2026-04-16"_qs).date, std::nullopt);
    EXPECT_EQ(read(u"||2023-03-15"_qs).date, QDate(2023, 3, 15));
    EXPECT_EQ(read(u"||2023-03-14"_qs).date, std::nullopt);
    EXPECT_EQ(read(u"K"_qs.repeated(80) + u"||"_qs).company.size(), 60);
    EXPECT_TRUE(read(u"Das kann ich nicht lesen."_qs).amount.isEmpty());
}

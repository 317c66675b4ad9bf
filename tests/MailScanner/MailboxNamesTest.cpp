#include "MailScanner/MailboxNames.h"

#include <gtest/gtest.h>

using namespace brellin;

TEST(MailboxNamesTest, readsModifiedUtf7AndWritesIt)
{
    for (const auto &[bytes, name] : {std::pair<QByteArray, QString>("Entw&APw-rfe", u"Entwürfe"_qs),
                                      {"R&-D", u"R&D"_qs},
                                      {"&U,BTFw-&ZeVnLIqe-", u"台北日本語"_qs},
                                      {"&2DzfjA-", u"🎌"_qs},
                                      {"INBOX", u"INBOX"_qs}}) {
        EXPECT_EQ(mailboxNameFrom(bytes), name);
        EXPECT_EQ(mailboxNameFrom(inModifiedUtf7(name)), name);
    }
    EXPECT_EQ(inModifiedUtf7(u"Entwürfe & mehr"_qs), "Entw&APw-rfe &- mehr");
}

TEST(MailboxNamesTest, showsOtherNamesAsTheyAre)
{
    EXPECT_EQ(mailboxNameFrom("Entwürfe & mehr"), u"Entwürfe & mehr"_qs) << "UTF-8";
    EXPECT_EQ(mailboxNameFrom("A & B"), u"A & B"_qs) << "no end of the shift";
    EXPECT_EQ(mailboxNameFrom("A &kein Base64- B"), u"A &kein Base64- B"_qs);
    EXPECT_EQ(mailboxNameFrom("a\xFF"), u"a\uFFFD"_qs);
}

#include "Decoding/MailMessage.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

Instant utc(const QString &text)
{
    return *instantFromIso(text);
}

MailHead headOf(const QByteArray &bytes)
{
    return readMailHead(bytes).value_or(MailHead());
}

} // namespace

TEST(MailMessageTest, readsTheHeaderOfAMessage)
{
    EXPECT_EQ(headOf("Received: from b.example by c.example (x; y)\r\n\tfor <anna@c.example>;\r\n"
                     " Sun, 1 Mar 2026 23:30:00 +0100 (CET)\r\n"
                     "Received: from a.example by b.example; Sat, 28 Feb 2026 10:00:00 +0000\r\n"
                     "Date: Sat, 28 Feb 2026 09:59:00 +0000\r\n"
                     "From: =?utf-8?q?Stadtwerke_K=C3=B6ln?= <rechnung@stadtwerke.example>\r\n"
                     "Message-ID: <1.2@stadtwerke.example>\r\n"
                     "Subject: =?utf-8?b?UmVjaG51bmcgTcOk?=\r\n =?utf-8?b?cno=?= 2026\r\n\r\nText"),
              (MailHead{u"1.2@stadtwerke.example"_qs, u"Rechnung März 2026"_qs,
                        u"Stadtwerke Köln <rechnung@stadtwerke.example>"_qs, utc(u"2026-03-01T22:30:00Z"_qs),
                        utc(u"2026-02-28T09:59:00Z"_qs)}));
}

TEST(MailMessageTest, readsHeadersWithDefectsAsFarAsPossible)
{
    EXPECT_EQ(headOf("From: M\xFCller <m@x.example>\nSubject: \xC3\x9C"
                     "berweisung\n")
                  .sender,
              u"Müller <m@x.example>"_qs);
    EXPECT_EQ(headOf("From: M\xFCller <m@x.example>\nSubject: \xC3\x9C"
                     "berweisung\n")
                  .subject,
              u"Überweisung"_qs);
    const MailHead bad = headOf("Received: nonsense\nDate: gestern\nFrom: nur ein Name\nSubject: =?x?y?z?=\n\n");
    EXPECT_EQ(bad.received, std::nullopt);
    EXPECT_EQ(bad.dated, std::nullopt);
    EXPECT_EQ(bad.sender, u"nur ein Name"_qs);
    EXPECT_FALSE(readMailHead({}));
    EXPECT_FALSE(readMailHead("\n\nkein Kopf"));
}

TEST(MailMessageTest, identifiesMessagesWithoutIdByWhatDoesNotChange)
{
    const QByteArray header = "From: a@b.example\nSubject: Rechnung\nDate: Sat, 28 Feb 2026 09:59:00 +0000\n";
    const QString id = headOf(header + "X-Mozilla-Status: 0001\n\nText").id;
    EXPECT_TRUE(id.startsWith(u"sha256-"_qs)) << id.toStdString();
    EXPECT_EQ(headOf(header + "X-Mozilla-Status: 0009\nStatus: RO\n\nText").id, id);
    EXPECT_NE(headOf(header + "To: c@d.example\n\nText").id, id);
}

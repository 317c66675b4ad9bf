#include "MailScanner/ReceiptName.h"
#include "MailScanner/PlainText.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace brellin;

namespace {

const QDate mailDay(2026, 3, 15);

MailHit hit(const QString &subject, const QString &sender = u"Stadtwerke Köln <a@b.de>"_qs)
{
    MailHit made;
    made.subject = subject;
    made.sender = sender;
    made.date = instantFromMilliseconds(mailDay.startOfDay().toMSecsSinceEpoch() + 1000);
    return made;
}

} // namespace

TEST(ReceiptNameTest, namesTheSenderByItsDisplayPart)
{
    EXPECT_EQ(senderName(u"\"Kontor, Nord\" <x@kontor.de>"_qs), u"Kontor, Nord"_qs);
    EXPECT_EQ(senderName(u"\"Die \\\"Gute\\\" GmbH\" <x@y.de>"_qs), u"Die Gute GmbH"_qs);
    EXPECT_EQ(senderName(u"Anna via Kontor <x@y.de>"_qs), u"Anna via Kontor"_qs);
    EXPECT_EQ(senderName(u"rechnung@kontor.de (Kontor AG)"_qs), u"Kontor AG"_qs);
    EXPECT_EQ(senderName(u"Kontor"_qs), u"Kontor"_qs);
}

TEST(ReceiptNameTest, namesABareAddressByTheMainWordOfItsDomain)
{
    EXPECT_EQ(senderName(u"rechnung@stadtwerke.co.uk"_qs), u"Stadtwerke"_qs);
    EXPECT_EQ(senderName(u"<no-reply@mail.kontor.de>"_qs), u"Kontor"_qs);
    EXPECT_EQ(senderName(u"\"post@kontor.de\" <post@kontor.de>"_qs), u"Kontor"_qs);
    EXPECT_EQ(senderName(u"a@co.de"_qs), u"Co"_qs) << "not a registry's level without a name before it";
    EXPECT_EQ(senderName(u"a@xn--mller-kva.de"_qs), u"Müller"_qs);
    EXPECT_EQ(senderName(u"root@localhost"_qs), u"Localhost"_qs);
}

TEST(ReceiptNameTest, fallsBackToSenderAndSubject)
{
    EXPECT_EQ(receiptName(hit(u"Rechnung 04/2025: Strom"_qs), {}),
              u"2026-03-15 Stadtwerke Köln – Rechnung 04-2025- Strom"_qs);
    EXPECT_EQ(receiptName(hit(u" \n"_qs), {}), u"2026-03-15 Stadtwerke Köln"_qs);
    const QString family = u"👨‍👩‍👧"_qs;
    EXPECT_TRUE(receiptName(hit(family.repeated(41)), {}).endsWith(u"– "_qs + family.repeated(40)))
        << "40 characters as people count them";
    EXPECT_EQ(receiptName(hit(u"a\u202Efdp.exe\u0007b"_qs), {}), u"2026-03-15 Stadtwerke Köln – afdp.exeb"_qs);
}

TEST(ReceiptNameTest, isBuiltFromWhatIsKnown)
{
    ReceiptFacts facts{u"Kontor"_qs, u"84,20 €"_qs, QDate(2026, 2, 28)};
    EXPECT_EQ(receiptName(hit(u"x"_qs), facts), u"2026-02-28 Kontor 84,20 €"_qs);
    facts.company.clear();
    EXPECT_EQ(receiptName(hit(u"x"_qs), facts), u"2026-02-28 Stadtwerke Köln 84,20 €"_qs);
    facts.amount.clear();
    EXPECT_EQ(receiptName(hit(u"x"_qs), facts), u"2026-02-28 Stadtwerke Köln – x"_qs);
}

TEST(ReceiptNameTest, neverLeavesItsFolderOrHidesItself)
{
    EXPECT_EQ(plainName(u"../../.ssh/id"_qs), u"-..-.ssh-id"_qs);
    EXPECT_EQ(plainName(u" . .versteckt "_qs), u"versteckt"_qs);
    EXPECT_EQ(plainName(u"..."_qs), QString());
}

#include "MailScanner/ReceiptFiles.h"

#include <gtest/gtest.h>

using namespace brellin;

TEST(ReceiptFilesTest, leavesOutTermsLogosAndOtherTypes)
{
    EXPECT_EQ(receiptFiles({u"AGB.pdf"_qs, u"Rechnung.PDF"_qs}), QStringList{u"Rechnung.PDF"_qs});
    EXPECT_EQ(receiptFiles({u"Allgemeine Gescha\u0308ftsbedingungen.pdf"_qs, u"R.pdf"_qs}), QStringList{u"R.pdf"_qs});
    EXPECT_TRUE(receiptFiles({u"invite.ics"_qs, u"Logo.png"_qs, u"pdf"_qs, u"a.pdf.exe"_qs}).isEmpty());
    EXPECT_EQ(receiptFiles({u"2026.03.01 Rechnung v1.2.pdf"_qs}).size(), 1) << "names with several dots";
}

TEST(ReceiptFilesTest, takesPicturesOnlyWhereThereIsNoPdf)
{
    EXPECT_EQ(receiptFiles({u"Foto.jpg"_qs, u"b.pdf"_qs, u"a.pdf"_qs}), (QStringList{u"b.pdf"_qs, u"a.pdf"_qs}));
    EXPECT_EQ(receiptFiles({u"image001.png"_qs, u"Outlook-x.jpg"_qs, u"Beleg.jpg"_qs}), QStringList{u"Beleg.jpg"_qs});
    EXPECT_TRUE(receiptFiles({u"image001.png"_qs}).isEmpty());
    EXPECT_EQ(receiptFiles({u"AGB.pdf"_qs, u"Beleg.heic"_qs}), QStringList{u"Beleg.heic"_qs})
        << "a PDF left out does not count";
}

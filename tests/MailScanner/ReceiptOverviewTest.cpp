#include "MailScanner/ReceiptOverview.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

const QByteArray header = "Datum;Art;Firma;Betrag;Datei;Betreff;Absender\n";
const OverviewLine strom{QDate(2026, 3, 1),       MailDocKind::Rechnung,       u"Kontor"_qs,
                         u"-12,00 €"_qs,          u"2026-03-01 Kontor.pdf"_qs, u"Rechnung; \"neu\""_qs,
                         u"=cmd|' /C calc'!A0"_qs};
const QByteArray stromText =
    "2026-03-01;Rechnung;Kontor;-12,00 €;2026-03-01 Kontor.pdf;\"Rechnung; \"\"neu\"\"\";'=cmd|' /C calc'!A0\n";

QByteArray added(const QByteArray &content, const OverviewLine &line = strom)
{
    ReceiptOverview overview(content);
    overview.add(line);
    return overview.content();
}

} // namespace

TEST(ReceiptOverviewTest, beginsWithItsHeaderAndQuotesWhatNeedsIt)
{
    EXPECT_EQ(added({}), header + stromText);
    EXPECT_EQ(added(header), header + stromText);
    EXPECT_EQ(added(header + "2026-01-01;a;b"), header + "2026-01-01;a;b\n" + stromText) << "no line end at the end";
}

TEST(ReceiptOverviewTest, protectsTextFromBeingAFormulaButKeepsAmountsNumbers)
{
    for (const QString &text : {u"=1"_qs, u"+1"_qs, u"-1"_qs, u"@a"_qs, u"\ta"_qs}) {
        OverviewLine line = strom;
        line.company = line.file = line.subject = line.sender = text;
        const QByteArray protectedText = "'" + text.toUtf8();
        EXPECT_EQ(added({}, line), header + "2026-03-01;Rechnung;" + protectedText + ";-12,00 €;" + protectedText +
                                       ";" + protectedText + ";" + protectedText + "\n");
    }
}

TEST(ReceiptOverviewTest, keepsTheFormAProgramSavedItIn)
{
    const QByteArray marked = "\xEF\xBB\xBF" + header;
    EXPECT_EQ(added(marked), marked + stromText);
    QByteArray dos = header;
    dos.replace("\n", "\r\n");
    EXPECT_EQ(added(dos), dos + stromText.chopped(1) + "\r\n");
    EXPECT_EQ(added("Datei,Betrag,Notiz\nx,1,\"a,b\nc\"\n"),
              "Datei,Betrag,Notiz\nx,1,\"a,b\nc\"\n2026-03-01 Kontor.pdf,\"-12,00 €\",\n");
    EXPECT_EQ(added("Datum\tDatei\n"), "Datum\tDatei\n2026-03-01\t2026-03-01 Kontor.pdf\n");
}

TEST(ReceiptOverviewTest, convertsWhatIsNotUtf8)
{
    ReceiptOverview windows(header + "2026-01-01;Rechnung;M\xFCller;5,00 \x80;a.pdf;;\n");
    EXPECT_TRUE(windows.isConverted());
    EXPECT_EQ(windows.content(), header + "2026-01-01;Rechnung;Müller;5,00 €;a.pdf;;\n");
    const QString text = QString::fromUtf8(header);
    const ReceiptOverview wide(QByteArray("\xFF\xFE") +
                               QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2));
    EXPECT_EQ(wide.content(), "\xEF\xBB\xBF" + header);
    EXPECT_FALSE(ReceiptOverview(header).isConverted());
}

TEST(ReceiptOverviewTest, removesItsOwnRecordAndNothingElse)
{
    OverviewLine lines = strom;
    lines.subject = u"zwei\nZeilen"_qs;
    const QByteArray content = added(added(header, lines));
    EXPECT_TRUE(ReceiptOverview(content).names(strom.file));
    ReceiptOverview overview(content);
    EXPECT_TRUE(overview.remove(lines));
    EXPECT_EQ(overview.content(), header + stromText);
    EXPECT_FALSE(overview.remove(lines));
    OverviewLine edited = strom;
    edited.amount = u"13,00 €"_qs;
    EXPECT_FALSE(overview.remove(edited));
    EXPECT_TRUE(overview.remove(strom));
    EXPECT_EQ(overview.content(), header);
    EXPECT_FALSE(overview.names(strom.file));
    overview.add(strom);
    ReceiptOverview saved(overview.content().replace("Kontor;-12", "\"Kontor\";-12").chopped(1));
    EXPECT_TRUE(saved.remove(strom)) << "quoted otherwise, without the last line end";

    OverviewLine odd = strom;
    odd.file = u"=\"a\";.pdf"_qs;
    EXPECT_TRUE(ReceiptOverview(added({}, odd)).names(odd.file));
}

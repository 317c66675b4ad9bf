#include "Decoding/MailFiles.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

struct Part {
    QByteArray fields;
    QByteArray content;
};

QByteArray multipart(const QByteArray &kind, const QByteArray &boundary, const std::vector<Part> &parts)
{
    QByteArray text = "Content-Type: multipart/" + kind + "; boundary=\"" + boundary + "\"\n\n";
    for (const Part &part : parts)
        text += "--" + boundary + "\n" + part.fields + "\n\n" + part.content + "\n";
    return text + "--" + boundary + "--\n";
}

QByteArray mail(const std::vector<Part> &parts)
{
    return "From: a@b.example\nSubject: x\nMIME-Version: 1.0\n" + multipart("mixed", "b", parts);
}

QStringList namesIn(const QByteArray &bytes)
{
    QStringList names;
    for (const MailFile &file : readMailFiles(bytes).value_or(std::vector<MailFile>()))
        names << file.name;
    return names;
}

const Part text{"Content-Type: text/plain; charset=utf-8", "Hallo"};

} // namespace

TEST(MailFilesTest, decidesByTypeAndNameNotByDisposition)
{
    const QByteArray bytes =
        mail({text,
              {"Content-Type: application/pdf; name=a.pdf\nContent-Disposition: inline", "eins"},
              {"Content-Type: application/octet-stream\nContent-Disposition: attachment; filename=b.PDF", "zwei"},
              {"Content-Type: application/pdf\nContent-Transfer-Encoding: base64", "ZHJlaQ=="},
              {"Content-Type: application/pdf; name=Rechnung", "vier"},
              {"Content-Type: application/ms-tnef; name=daten.dat", "x"},
              {"Content-Type: application/octet-stream; name=WinMail.dat", "y"},
              {"Content-Type: text/xml; name=xrechnung.xml", "<a/>"}});
    EXPECT_EQ(namesIn(bytes),
              (QStringList{u"a.pdf"_qs, u"b.PDF"_qs, u"Anhang.pdf"_qs, u"Rechnung.pdf"_qs, u"xrechnung.xml"_qs}));
    EXPECT_EQ(readMailFiles(bytes)->at(2).content, "drei");
    EXPECT_TRUE(namesIn("Subject: x\n\nnur Text").isEmpty());
    EXPECT_EQ(namesIn("Subject: x\nContent-Type: application/pdf; name=a.pdf\n\nalles"), QStringList{u"a.pdf"_qs});
}

TEST(MailFilesTest, leavesOutPicturesThatTheTextShows)
{
    EXPECT_EQ(namesIn(mail({{"Content-Type: text/html", "<img src=\"cid:logo%40x\"><p>cid:anderes"},
                            {"Content-Type: image/png; name=logo.png\nContent-ID: <logo@x>", "a"},
                            {"Content-Type: image/jpeg; name=beleg.jpg\nContent-ID: <beleg@x>", "b"},
                            {"Content-Type: image/jpeg; name=foto.jpg", "c"}})),
              (QStringList{u"beleg.jpg"_qs, u"foto.jpg"_qs}));
}

TEST(MailFilesTest, decodesNamesInEveryWayTheyAreSent)
{
    EXPECT_EQ(namesIn(mail(
                  {{"Content-Type: application/pdf; name=\"=?utf-8?q?M=C3=A4rz.pdf?=\"", "1"},
                   {"Content-Type: application/pdf\nContent-Disposition: attachment; "
                    "filename*0*=utf-8''Rech%C3%BC; filename*1=nung.pdf",
                    "2"},
                   {"Content-Type: application/pdf\nContent-Disposition: attachment; filename=\"B\xFCro.pdf\"", "3"}})),
              (QStringList{u"März.pdf"_qs, u"Rechünung.pdf"_qs, u"Büro.pdf"_qs}));
}

TEST(MailFilesTest, keepsNamesInTheirFolderAndApart)
{
    EXPECT_EQ(plainFileName(u"../../.ssh/authorized_keys"_qs), u"authorized_keys"_qs);
    EXPECT_EQ(plainFileName(u"C:\\Users\\a\\..\\x.pdf"_qs), u"x.pdf"_qs);
    EXPECT_EQ(plainFileName(u" ..versteckt\u202Efdp.exe\n"_qs), u"verstecktfdp.exe"_qs);
    EXPECT_EQ(plainFileName(u".."_qs), QString());
    EXPECT_EQ(plainFileName(u"ä"_qs.repeated(300) + u".pdf"_qs).toUtf8().size(), 254);
    EXPECT_EQ(namesIn(mail({{"Content-Type: application/pdf; name=a.pdf", "1"},
                            {"Content-Type: application/pdf; name=A.pdf", "2"},
                            {"Content-Type: application/pdf; name=noch.pdf", "1"}})),
              (QStringList{u"a.pdf"_qs, u"A (2).pdf"_qs}))
        << "equal content is one file";
}

TEST(MailFilesTest, entersForwardedAndSignedButNotEncryptedMail)
{
    const Part pdf{"Content-Type: application/pdf; name=a.pdf", "pdf"};
    const auto forwarded = [](const QByteArray &message) { return Part{"Content-Type: message/rfc822", message}; };
    QByteArray nested = mail({pdf});
    for (int depth = 1; depth <= 5; ++depth)
        nested = "Subject: f\n" + multipart("mixed", "f" + QByteArray::number(depth), {forwarded(nested)});
    EXPECT_EQ(namesIn(nested), QStringList{u"a.pdf"_qs});
    EXPECT_TRUE(namesIn("Subject: f\n" + multipart("mixed", "f6", {forwarded(nested)})).isEmpty()) << "too deep";
    EXPECT_EQ(namesIn("Subject: s\n" + multipart("signed; protocol=\"application/pgp-signature\"", "s",
                                                 {pdf, {"Content-Type: application/pgp-signature", "-"}})),
              QStringList{u"a.pdf"_qs});
    EXPECT_TRUE(namesIn("Subject: e\n" + multipart("encrypted; protocol=\"application/pgp-encrypted\"", "e",
                                                   {{"Content-Type: application/pgp-encrypted", "Version: 1"}, pdf}))
                    .isEmpty());
}

TEST(MailFilesTest, survivesBrokenMessages)
{
    EXPECT_TRUE(namesIn("Content-Type: multipart/mixed; boundary=b\n\n--b\n--b\n--b--").isEmpty());
    EXPECT_EQ(namesIn("Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: application/pdf\n\nohne Ende"),
              QStringList{u"Anhang.pdf"_qs});
    QByteArray deep = "Subject: x\n";
    for (int i = 0; i < 3000; ++i)
        deep += "Content-Type: multipart/mixed; boundary=b" + QByteArray::number(i) + "\n\n--b" +
                QByteArray::number(i) + "\n";
    EXPECT_TRUE(namesIn(deep).isEmpty());
}

#include "System/Decoders.h"
#include "Decoding/VideoPicture.h"
#include "Support/SmallPdf.h"
#include "Support/TempTree.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;

namespace {

using namespace std::chrono_literals;

std::string encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes.toStdString();
}

QImage filled(int width, int height, QColor colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

/// A JPEG with an EXIF orientation of a quarter turn.
std::string turnedJpeg(int width, int height)
{
    std::string jpeg = encoded(filled(width, height, Qt::red), "JPG");
    using namespace std::string_literals;
    const std::string block = "MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"s;
    const std::string content = "Exif\0\0"s + block;
    jpeg.insert(2, "\xFF\xE1\0"s + static_cast<char>(content.size() + 2) + content);
    return jpeg;
}

/// A PNG that claims to be larger than any memory.
std::string hugePng()
{
    std::string png = encoded(filled(8, 8, Qt::blue), "PNG");
    qToBigEndian(quint32(100'000), png.data() + 16);
    qToBigEndian(quint32(100'000), png.data() + 20);
    quint32 sum = 0xFFFFFFFF;
    for (std::size_t i = 12; i < 29; ++i) {
        sum ^= static_cast<unsigned char>(png[i]);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum & 1U) != 0 ? sum >> 1U ^ 0xEDB88320U : sum >> 1U;
    }
    qToBigEndian(~sum, png.data() + 29);
    return png;
}

DecoderRequest pictureOf(const Location &file, int side)
{
    return {decoderWords::picture, {file.native(), std::to_string(side)}};
}

class DecodersTest : public testing::Test {
protected:
    /// A shell script in place of the decoder.
    Location script(std::string_view lines) const
    {
        Location program = tree.file("decoder", "#!/bin/sh\n" + std::string(lines) + "\n");
        ::chmod(program.c_str(), 0700);
        return program;
    }

    const TempTree tree;
    SystemProcessRunner processes;
    DecoderProcesses decoders{processes, BRELLIN_BILD, 20s};
};

constexpr auto greeting = R"(printf '\006\000\000\000bereit')";

} // namespace

TEST_F(DecodersTest, scaleTurnAndKeepPictures)
{
    const struct {
        Location file;
        int width;
        int height;
        bool opaque;
    } rows[] = {
        {tree.file("wide.jpg", encoded(filled(3000, 1500, Qt::red), "JPG")), 128, 64, true},
        {tree.file("big.png", encoded(filled(2000, 3000, Qt::red), "PNG")), 85, 128, false},
        {tree.file("small.png", encoded(filled(20, 30, Qt::red), "PNG")), 20, 30, false},
        {tree.file("thin.png", encoded(filled(4000, 1, Qt::red), "PNG")), 128, 1, false},
        {tree.file("turned.jpg", turnedJpeg(400, 200)), 64, 128, true},
        {tree.file("a jpeg.png", encoded(filled(128, 128, Qt::red), "JPG")), 128, 128, true},
        {tree.file("gr\xFC\xDF"
                   "e \u00FC u\u0308\n.png",
                   encoded(filled(10, 10, Qt::red), "PNG")),
         10, 10, false},
    };
    for (const auto &row : rows) {
        const Result<DecodedPicture> picture = decoders.askForPicture(pictureOf(row.file, 128));
        ASSERT_TRUE(picture) << row.file;
        EXPECT_EQ(std::pair(picture->width, picture->height), std::pair(row.width, row.height)) << row.file;
        EXPECT_EQ(picture->opaque, row.opaque) << row.file;
        const auto *first = reinterpret_cast<const unsigned char *>(picture->pixels.constData());
        EXPECT_GT(first[0], 240) << row.file;
        EXPECT_LT(first[1], 15) << row.file;
        EXPECT_EQ(first[3], 255) << row.file;
    }
}

TEST_F(DecodersTest, drawPagesOfPdfFiles)
{
    const Location pdf = tree.file("a.pdf", smallPdf("Rechnung"));
    const Result<DecodedPicture> page = decoders.askForPicture({decoderWords::pdfPage, {pdf.native(), "0", "256"}});
    ASSERT_TRUE(page);
    EXPECT_EQ(std::pair(page->width, page->height), std::pair(256, 128));
    EXPECT_TRUE(page->opaque);
    EXPECT_TRUE(page->pixels.startsWith("\xFF\xFF\xFF\xFF"));
    EXPECT_TRUE(std::ranges::any_of(page->pixels, [](char value) { return static_cast<unsigned char>(value) < 100; }))
        << "no letter is drawn";
    EXPECT_FALSE(decoders.askForPicture({decoderWords::pdfPage, {pdf.native(), "1", "256"}}));
}

TEST_F(DecodersTest, readThePagesOfPdfFiles)
{
    const auto texts = [&](const Location &pdf, const char *first) {
        return decoders.ask({decoderWords::pdfPages, {pdf.native(), first}}, nullptr);
    };
    const Location pdf = tree.file("a.pdf", smallPdf("Rechnung \xFC"
                                                     "ber Strom"));
    const QByteArray answer = texts(pdf, "0").value_or(QByteArray());
    EXPECT_TRUE(answer.contains("\"pages\":1") && answer.contains("[\"Rechnung über Strom")) << answer.constData();
    for (const auto &[file, first] : {std::pair(pdf, "1"), {tree.file("rubbish.pdf", "no PDF"), "0"}}) {
        const Result<QByteArray> none = texts(file, first);
        EXPECT_TRUE(!none && isUndecodable(none.error())) << file << ' ' << first;
    }
    EXPECT_FALSE(isUndecodable(texts(tree.path("missing.pdf"), "0").error()));
}

TEST_F(DecodersTest, goOnAfterBrokenFiles)
{
    const std::string png = encoded(filled(300, 300, Qt::red), "PNG");
    const Location good = tree.file("good.png", png);
    for (const Location &broken :
         {tree.file("empty.png"), tree.file("rubbish.jpg", "no picture"), tree.file("cut.png", png.substr(0, 40)),
          tree.file("huge.png", hugePng()), tree.file("cut.jpg", turnedJpeg(40, 40).substr(0, 60))}) {
        const Result<DecodedPicture> picture = decoders.askForPicture(pictureOf(broken, 128));
        ASSERT_FALSE(picture) << broken;
        EXPECT_TRUE(isUndecodable(picture.error())) << broken;
        EXPECT_TRUE(decoders.askForPicture(pictureOf(good, 128))) << broken;
    }
    for (const Location &unread : {tree.path("missing.png"), tree.folder("folder.png"), tree.link("l.png", "good.png")})
        EXPECT_FALSE(isUndecodable(decoders.askForPicture(pictureOf(unread, 128)).error())) << unread;
}

TEST_F(DecodersTest, endAProcessThatHangsDiesOrBabbles)
{
    for (const std::string misbehaviour :
         {"exit 0", "kill -9 $$", R"(head -c 8 >/dev/null; printf '\377\377\377\377x'; sleep 1000)",
          R"(head -c 8 >/dev/null; printf '\005\000\000\000+')",
          R"(head -c 8 >/dev/null; printf '\002\000\000\000+x'; sleep 1000)"}) {
        DecoderProcesses scripted(processes, script(greeting + std::string("\n") + misbehaviour), 20s);
        const Result<DecodedPicture> picture = scripted.askForPicture(pictureOf("/a.png", 128));
        ASSERT_FALSE(picture) << misbehaviour;
        EXPECT_TRUE(isUndecodable(picture.error())) << misbehaviour;
    }
    // A timeout may be due to a busy machine.
    DecoderProcesses hanging(processes, script(greeting + std::string("\nsleep 1000")), 300ms);
    EXPECT_TRUE(hanging.askForPicture(pictureOf("/a.png", 128)).error().is(std::errc::timed_out));
    // A program that does not start says nothing about the file.
    for (const Location &program : {script("exit 1"), tree.path("no-program")}) {
        DecoderProcesses missing(processes, program, 300ms);
        EXPECT_FALSE(isUndecodable(missing.askForPicture(pictureOf("/a.png", 128)).error()));
    }
}

TEST_F(DecodersTest, answerManyRequests)
{
    const Location good = tree.file("good.png", encoded(filled(20, 20, Qt::red), "PNG"));
    int answered = 0;
    for (int i = 0; i < 120; ++i)
        answered += decoders.askForPicture(pictureOf(good, 128)) ? 1 : 0;
    EXPECT_EQ(answered, 120);
}

TEST_F(DecodersTest, lookOnceForAProgramForVideos)
{
    DecoderProcesses scripted(processes, script("echo x >> \"$0.log\"; exit 3"), 20s);
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(isUndecodable(scripted.askForPicture({decoderWords::video, {"/a.mp4", "128"}}).error()));
    EXPECT_EQ(tree.content("decoder.log"), "x\n");
}

TEST_F(DecodersTest, stopWhenCancelled)
{
    DecoderProcesses scripted(processes, script(std::string(greeting) + "\nsleep 1000"), 1h);
    JobControl control;
    control.cancel();
    EXPECT_TRUE(scripted.askForPicture(pictureOf("/a.png", 128), &control).error().isCancelled());
}

TEST(DecodedPictureTest, isRefusedWhereItsSizesLie)
{
    const DecodedPicture picture{2, 1, true, QByteArray(8, 'x')};
    const QByteArray bytes = bytesOf(picture);
    EXPECT_EQ(pictureFrom(bytes), picture);
    EXPECT_FALSE(pictureFrom(bytes.chopped(1)));
    EXPECT_FALSE(pictureFrom(bytes + 'x'));
    EXPECT_FALSE(pictureFrom({}));
    EXPECT_FALSE(pictureFrom(bytesOf(DecodedPicture{0, 1, true, {}})));
    EXPECT_FALSE(pictureFrom(bytesOf(DecodedPicture{65536, 65536, true, {}})));
}

TEST_F(DecodersTest, drawVideosWhereAProgramForItIsInstalled)
{
    if (videoProgram().empty())
        GTEST_SKIP() << "no program for videos here";
    // The program also accepts pictures, as films of one frame.
    const Location film = tree.file("film.mp4", encoded(filled(640, 320, Qt::green), "JPG"));
    const Result<DecodedPicture> picture = decoders.askForPicture({decoderWords::video, {film.native(), "128"}});
    ASSERT_TRUE(picture);
    EXPECT_EQ(std::pair(picture->width, picture->height), std::pair(128, 64));
    const Location rubbish = tree.file("rubbish.mp4", "no film");
    EXPECT_TRUE(isUndecodable(decoders.askForPicture({decoderWords::video, {rubbish.native(), "128"}}).error()));
}

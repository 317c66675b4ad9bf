#include "Decoding/MediaFacts.h"
#include "Decoding/ArchiveListing.h"
#include "Disk/EntryPlace.h"
#include "Support/SmallPdf.h"
#include "Support/TempTree.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cstring>

using namespace brellin;
using namespace brellin::test;
using namespace std::string_literals;

namespace {

std::string big(std::uint64_t number, int length)
{
    std::string bytes;
    for (int i = length - 1; i >= 0; --i)
        bytes += static_cast<char>(number >> (8 * i));
    return bytes;
}

std::string little(std::uint64_t number, int length)
{
    const std::string bytes = big(number, length);
    return {bytes.rbegin(), bytes.rend()};
}

std::string atom(const std::string &name, const std::string &content)
{
    return big(content.size() + 8, 4) + name + content;
}

std::string mp4()
{
    const std::uint64_t created = std::uint64_t(2'082'844'800) + 1'600'000'000;
    const std::string film = atom("mvhd", big(0, 4) + big(created, 4) + big(0, 4) + big(600, 4) + big(600 * 75, 4));
    const std::string track = atom("trak", atom("tkhd", std::string(76, '\0') + big(std::uint64_t(1920) << 16U, 4) +
                                                            big(std::uint64_t(1080) << 16U, 4)));
    return atom("ftyp", "isom") + atom("mdat", std::string(50, 'x')) + atom("moov", film + track);
}

std::string wav()
{
    return "RIFF\0\0\0\0WAVEfmt "s + little(16, 4) + little(1, 2) + little(2, 2) + little(44100, 4) +
           little(176400, 4) + little(4, 2) + little(16, 2) + "data" + little(352800, 4);
}

std::string flac()
{
    return "fLaC\0\0\0\x22"s + std::string(10, '\0') + big(std::uint64_t(48000) << 44U | 48000 * 3, 8);
}

std::string ogg()
{
    return "OggS"s + std::string(24, '\0') + "\1vorbis"s + little(0, 4) + "\2" + little(44100, 4) +
           std::string(30, '\0') + "OggS\0\4"s + little(44100 * 5, 8) + std::string(10, '\0');
}

std::string mp3()
{
    return "ID3\4\0\0"s + big(10, 4) + std::string(10, '\0') + "\xFF\xFB\x90\x00"s + std::string(16000, '\0');
}

std::string matroska()
{
    const std::string info = "\x2A\xD7\xB1\x83"s + big(1'000'000, 3) + "\x44\x89\x84"s + big(0x461C4000, 4); // 10,000.0
    const std::string video = "\xE0\x88\xB0\x82"s + big(640, 2) + "\xBA\x82"s + big(360, 2);
    const std::string track = "\xAE\x8A"s + video;
    const std::string rest = "\x15\x49\xA9\x66"s + static_cast<char>(0x80U | info.size()) + info + "\x16\x54\xAE\x6B"s +
                             static_cast<char>(0x80U | track.size()) + track;
    return "\x1A\x45\xDF\xA3\x80\x18\x53\x80\x67"s + static_cast<char>(0x80U | rest.size()) + rest;
}

std::string avi()
{
    return "RIFF\0\0\0\0AVI LIST\0\0\0\0hdrlavih"s + little(56, 4) + little(40'000, 4) + std::string(12, '\0') +
           little(250, 4) + std::string(12, '\0') + little(720, 4) + little(576, 4);
}

/// EXIF data as written by a camera.
std::string exif()
{
    const std::string main = little(3, 2) + little(0x010F, 2) + little(2, 2) + little(6, 4) + little(62, 4) + //
                             little(0x0110, 2) + little(2, 2) + little(4, 4) + "R5\0\0"s +                    //
                             little(0x8769, 2) + little(4, 2) + little(1, 4) + little(68, 4) + little(0, 4);
    const std::string camera =
        little(1, 2) + little(0x9003, 2) + little(2, 2) + little(20, 4) + little(86, 4) + little(0, 4);
    return "II*\0"s + little(8, 4) + main + std::string(12, '\0') + "Canon\0"s + camera + "2026:09:03 14:05:09\0"s;
}

QJsonObject factsOf(const std::string &content)
{
    QBuffer buffer;
    buffer.setData(QByteArray::fromStdString(content));
    buffer.open(QIODevice::ReadOnly);
    return mediaFacts(buffer).value_or(QJsonObject());
}

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

std::string tarEntry(const std::string &name, const std::string &size, char kind)
{
    std::string head(512, '\0');
    head.replace(0, name.size(), name);
    head.replace(100, 7, "0000644");
    head.replace(124, size.size(), size);
    head.replace(136, 11, "00000000000");
    head[156] = kind;
    head.replace(257, 8, "ustar\00000"s);
    head.replace(148, 8, "        ");
    unsigned sum = 0;
    for (const char c : head)
        sum += static_cast<unsigned char>(c);
    char text[8];
    std::snprintf(text, sizeof text, "%06o", sum);
    return head.replace(148, 7, text, 7);
}

Result<QJsonObject> listingOf(const TempTree &tree, const std::string &content)
{
    const EntryPlace place = openPlace(tree.file("archive", content)).value();
    return archiveListing(openForReading(place.at())->number());
}

} // namespace

TEST(MediaFactsTest, readsWhatFilesSayOfThemselves)
{
    const struct {
        const char *name;
        std::string content;
        QJsonObject facts;
    } rows[] = {
        {"mp4", mp4(), object(R"({"seconds":75,"width":1920,"height":1080,"taken":"2020-09-13T14:26:40"})")},
        {"wav", wav(), object(R"({"seconds":2})")},
        {"flac", flac(), object(R"({"seconds":3})")},
        {"ogg", ogg(), object(R"({"seconds":5})")},
        {"mp3", mp3(), object(R"({"seconds":1.00025})")},
        {"matroska", matroska(), object(R"({"seconds":10,"width":640,"height":360})")},
        {"avi", avi(), object(R"({"seconds":10,"width":720,"height":576})")},
        {"exif", exif(), object(R"({"camera":"Canon R5","taken":"2026-09-03T14:05:09"})")},
        {"pdf", smallPdf("x"), object(R"({"pages":1,"pageWidth":400,"pageHeight":200})")},
        {"text", "only words", {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(factsOf(row.content), row.facts)
            << row.name << QJsonDocument(factsOf(row.content)).toJson().toStdString();
}

TEST(MediaFactsTest, survivesWhatIsCutOffOrSpoilt)
{
    const auto readBoth = [](const std::string &content) {
        QBuffer buffer;
        buffer.setData(QByteArray::fromStdString(content));
        buffer.open(QIODevice::ReadOnly);
        recordingFacts(buffer);
        exifFacts(buffer.data());
    };
    for (const std::string &whole : {mp4(), wav(), flac(), ogg(), matroska(), avi(), exif()}) {
        for (std::size_t length = 0; length < whole.size(); ++length)
            readBoth(whole.substr(0, length));
        for (std::size_t at = 4; at < whole.size(); ++at) {
            for (const char spoilt : {'\0', '\xFF', '\x7F', '\1'}) {
                std::string content = whole;
                content[at] = spoilt;
                readBoth(content);
            }
        }
    }
}

TEST(ArchiveListingTest, namesWhatIsInsideUpToALimit)
{
    const TempTree tree;
    const std::string small = tarEntry("Fotos/", "00000000000", '5') +
                              tarEntry("Fotos/\u00FC.jpg", "00000000003", '0') + "abc" + std::string(509, '\0') +
                              std::string(1024, '\0');
    EXPECT_EQ(listingOf(tree, small).value_or(QJsonObject()),
              object("{\"entries\":[{\"name\":\"Fotos/\",\"folder\":true},{\"name\":\"Fotos/\u00FC.jpg\",\"size\":3}],"
                     "\"more\":false,\"damaged\":false}"));
    std::string many;
    for (int i = 0; i < 6000; ++i)
        many += tarEntry("f" + std::to_string(i), "00000000000", '0');
    const QJsonObject listing = listingOf(tree, many).value_or(QJsonObject());
    EXPECT_EQ(listing.value(u"entries").toArray().size(), 5000);
    EXPECT_TRUE(listing.value(u"more").toBool());
}

TEST(ArchiveListingTest, showsTheBeginningOfABrokenArchive)
{
    const TempTree tree;
    // The header claims eight gigabytes that do not follow.
    const QJsonObject listing = listingOf(tree, tarEntry("bombe", "77777777777", '0') + "x").value_or(QJsonObject());
    EXPECT_EQ(listing.value(u"entries").toArray().size(), 1);
    EXPECT_TRUE(listing.value(u"damaged").toBool());
    EXPECT_FALSE(listingOf(tree, "no archive at all"));
}

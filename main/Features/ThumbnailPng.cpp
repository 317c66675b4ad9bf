#include "Features/ThumbnailPng.h"

#include "Disk/EntryPlace.h"

#include <QtEndian>

#include <array>

namespace brellin {

namespace {

constexpr QByteArrayView signature("\x89PNG\r\n\x1A\n", 8);
/// Text chunks come first; ignore any beyond this offset.
constexpr std::size_t textsWithin = 64 * 1024;
/// A fast zlib level: thumbnails are read more often than transferred.
constexpr int compression = 4;
/// PNG filter "Sub": each byte as the difference to the same byte of the pixel to its left.
constexpr char differenceToLeft = 1;

QByteArray fourBytes(quint32 number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

constexpr std::array<quint32, 256> checksumTable()
{
    std::array<quint32, 256> table{};
    for (quint32 i = 0; i < table.size(); ++i) {
        quint32 value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1U) != 0 ? value >> 1U ^ 0xEDB88320U : value >> 1U;
        table[i] = value;
    }
    return table;
}

quint32 checksum(const QByteArray &bytes)
{
    static constexpr std::array<quint32, 256> table = checksumTable();
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes)
        sum = table[(sum ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ sum >> 8U;
    return ~sum;
}

QByteArray chunk(const char *type, const QByteArray &content)
{
    const QByteArray typed = type + content;
    return fourBytes(static_cast<quint32>(content.size())) + typed + fourBytes(checksum(typed));
}

QByteArray rowsOf(const DecodedPicture &picture)
{
    const int depth = picture.opaque ? 3 : 4;
    QByteArray rows;
    rows.reserve(qsizetype(picture.height) * (1 + qsizetype(picture.width) * depth));
    const char *pixel = picture.pixels.constData();
    for (int y = 0; y < picture.height; ++y) {
        rows += differenceToLeft;
        for (int x = 0; x < picture.width; ++x, pixel += 4) {
            for (int i = 0; i < depth; ++i)
                rows += static_cast<char>(pixel[i] - (x > 0 ? pixel[i - 4] : 0));
        }
    }
    return rows;
}

} // namespace

QByteArray pngOf(const DecodedPicture &picture, const PngTexts &texts)
{
    const QByteArray form(picture.opaque ? "\x08\x02\0\0\0" : "\x08\x06\0\0\0", 5);
    QByteArray png =
        signature.toByteArray() + chunk("IHDR", fourBytes(static_cast<quint32>(picture.width)) +
                                                    fourBytes(static_cast<quint32>(picture.height)) + form);
    for (auto text = texts.begin(); text != texts.end(); ++text)
        png += chunk("tEXt", text.key() + '\0' + text.value());
    // qCompress() prepends the length, which PNG does not have.
    return png + chunk("IDAT", qCompress(rowsOf(picture), compression).sliced(4)) + chunk("IEND", {});
}

PngTexts pngTexts(const Location &file)
{
    const Result<EntryPlace> place = openPlace(file);
    const Result<Descriptor> open = place ? openForReading(place->at()) : failure(place.error());
    if (!open)
        return {};
    const QByteArray bytes = QByteArray::fromStdString(readBeginning(*open, textsWithin));
    if (!bytes.startsWith(signature))
        return {};
    PngTexts texts;
    for (qsizetype at = signature.size(); at + 8 <= bytes.size();) {
        const auto length = static_cast<qsizetype>(qFromBigEndian<quint32>(bytes.constData() + at));
        const QByteArray type = bytes.sliced(at + 4, 4);
        if (type == "IDAT" || length > bytes.size() - at - 8)
            break;
        const QByteArray content = bytes.sliced(at + 8, length);
        const qsizetype end = content.indexOf('\0');
        if (type == "tEXt" && end > 0)
            texts.insert(content.first(end), content.sliced(end + 1));
        at += length + 12;
    }
    return texts;
}

} // namespace brellin

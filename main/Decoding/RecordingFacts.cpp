#include "Decoding/Bytes.h"
#include "Decoding/MediaFacts.h"
#include "Decoding/Mp4Facts.h"

#include <array>
#include <cmath>

namespace brellin {

namespace {

constexpr qint64 beginningSize = 1024 * 1024;
constexpr qint64 oggEndSize = 64 * 1024;

QJsonObject lasting(double seconds)
{
    if (!std::isfinite(seconds) || seconds <= 0)
        return {};
    return {{QStringLiteral("seconds"), seconds}};
}

double ratio(double amount, double perSecond)
{
    return perSecond > 0 ? amount / perSecond : 0;
}

void addSize(QJsonObject &facts, double width, double height)
{
    if (width < 1 || height < 1)
        return;
    facts.insert(QStringLiteral("width"), width);
    facts.insert(QStringLiteral("height"), height);
}

QJsonObject wavFacts(const Bytes &bytes)
{
    double bytesPerSecond = 0;
    for (qsizetype at = 12; at + 8 <= bytes.size();) {
        const qsizetype size = bytes.number32(at + 4);
        if (bytes.has(at, "fmt "))
            bytesPerSecond = bytes.number32(at + 16);
        else if (bytes.has(at, "data"))
            return lasting(ratio(static_cast<double>(size), bytesPerSecond));
        at += 8 + size + (size & 1);
    }
    return {};
}

/// The main header has a fixed position: RIFF, the list "hdrl", then "avih".
QJsonObject aviFacts(const Bytes &bytes)
{
    constexpr qsizetype header = 32;
    if (!bytes.has(24, "avih"))
        return {};
    QJsonObject facts = lasting(double(bytes.number32(header)) * bytes.number32(header + 16) / 1e6);
    addSize(facts, bytes.number32(header + 32), bytes.number32(header + 36));
    return facts;
}

QJsonObject flacFacts(const Bytes &bytes)
{
    const std::uint64_t packed = bytes.number64(18); // 20 bits sample rate, 3 channels, 5 depth, 36 total samples
    return lasting(ratio(static_cast<double>(packed & 0xFFFFFFFFFU), static_cast<double>(packed >> 44U)));
}

/// The last page has the number of samples, the first the sample rate.
QJsonObject oggFacts(const Bytes &beginning, QIODevice &file)
{
    double rate = 0;
    if (beginning.has(28, "OpusHead"))
        rate = 48000;
    else if (beginning.has(28, "\1vorbis"))
        rate = beginning.number32(40);
    file.seek(std::max<qint64>(0, file.size() - oggEndSize));
    const QByteArray end = file.read(oggEndSize);
    const qsizetype last = end.lastIndexOf("OggS");
    if (last < 0)
        return {};
    return lasting(ratio(static_cast<double>(Bytes(end, std::endian::little).number64(last + 6)), rate));
}

/// MPEG-1 and MPEG-2 layer III frames.
QJsonObject mp3Facts(const Bytes &bytes, qint64 fileSize)
{
    qsizetype at = 0;
    if (bytes.has(0, "ID3"))
        at = 10 + (qsizetype(bytes.number(6, 1)) << 21 | qsizetype(bytes.number(7, 1)) << 14 |
                   qsizetype(bytes.number(8, 1)) << 7 | qsizetype(bytes.number(9, 1)));
    const std::uint32_t head = bytes.number32(at);
    const bool isFrame = (head & 0xFFE00000U) == 0xFFE00000U && (head >> 17U & 3U) == 1;
    const bool isFirstVersion = (head >> 19U & 3U) == 3;
    constexpr std::array rates{44100, 48000, 32000, 0};
    constexpr std::array kilobits{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
    constexpr std::array kilobitsSecond{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0};
    const double rate = isFirstVersion ? rates[head >> 10U & 3U] : rates[head >> 10U & 3U] / 2.0;
    if (!isFrame || rate <= 0)
        return {};
    const bool mono = (head >> 6U & 3U) == 3;
    const qsizetype xing = at + 4 + (isFirstVersion ? (mono ? 17 : 32) : (mono ? 9 : 17));
    if ((bytes.has(xing, "Xing") || bytes.has(xing, "Info")) && (bytes.number32(xing + 4) & 1U) != 0)
        return lasting(bytes.number32(xing + 8) * (isFirstVersion ? 1152.0 : 576.0) / rate);
    const int perSecond = (isFirstVersion ? kilobits : kilobitsSecond)[head >> 12U & 15U];
    return lasting(ratio(static_cast<double>(fileSize - at) * 8, perSecond * 1000.0));
}

/// A minimal parser of Matroska elements: id, length and content, from the beginning of the file.
class Matroska {
public:
    explicit Matroska(const Bytes &bytes) : m_bytes(bytes) { read(0, bytes.size(), 0); }

    QJsonObject facts() const
    {
        QJsonObject facts = lasting(m_duration * m_scale / 1e9);
        addSize(facts, m_width, m_height);
        return facts;
    }

private:
    /// A variable-length integer of one to eight bytes; the first byte tells the length.
    std::uint64_t variable(qsizetype &at, bool withMarker) const
    {
        const auto first = static_cast<std::uint8_t>(m_bytes.number(at, 1));
        const int length = first == 0 ? 8 : std::countl_zero(first) + 1;
        std::uint64_t value = m_bytes.number(at, length);
        if (!withMarker)
            value &= (std::uint64_t(1) << (7U * static_cast<unsigned>(length))) - 1;
        at += length;
        return value;
    }

    void read(qsizetype at, qsizetype end, int depth)
    {
        while (at < end && m_bytes.number(at, 1) != 0) {
            const std::uint64_t id = variable(at, true);
            const std::uint64_t length = variable(at, false);
            const qsizetype size =
                length > std::uint64_t(end - at) ? std::max<qsizetype>(end - at, 0) : static_cast<qsizetype>(length);
            const bool holdsOthers =
                id == 0x18538067 || id == 0x1549A966 || id == 0x1654AE6B || id == 0xAE || id == 0xE0;
            if (holdsOthers && depth < 6)
                read(at, at + size, depth + 1);
            else
                take(id, at, static_cast<int>(std::min<qsizetype>(size, 8)));
            at += size;
        }
    }

    void take(std::uint64_t id, qsizetype at, int size)
    {
        const std::uint64_t number = m_bytes.number(at, size);
        if (id == 0x2AD7B1)
            m_scale = static_cast<double>(number);
        else if (id == 0x4489)
            m_duration = size == 4 ? double(std::bit_cast<float>(static_cast<std::uint32_t>(number)))
                                   : std::bit_cast<double>(number);
        else if (id == 0xB0)
            m_width = static_cast<double>(number);
        else if (id == 0xBA)
            m_height = static_cast<double>(number);
    }

    const Bytes &m_bytes;
    double m_scale = 1e6;
    double m_duration = 0;
    double m_width = 0;
    double m_height = 0;
};

} // namespace

QJsonObject recordingFacts(QIODevice &file)
{
    file.seek(0);
    const QByteArray beginning = file.read(beginningSize);
    const Bytes big(beginning);
    const Bytes little(beginning, std::endian::little);
    if (big.has(0, "RIFF") && big.has(8, "WAVE"))
        return wavFacts(little);
    if (big.has(0, "RIFF") && big.has(8, "AVI "))
        return aviFacts(little);
    if (big.has(0, "fLaC"))
        return flacFacts(big);
    if (big.has(0, "OggS"))
        return oggFacts(little, file);
    if (big.has(0, "\x1A\x45\xDF\xA3"))
        return Matroska(big).facts();
    if (big.has(4, "ftyp"))
        return mp4Facts(file);
    if (big.has(0, "ID3") || (big.number16(0) & 0xFFE0U) == 0xFFE0U)
        return mp3Facts(big, file.size());
    return {};
}

} // namespace brellin

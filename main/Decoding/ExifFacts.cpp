#include "Decoding/Bytes.h"
#include "Decoding/MediaFacts.h"

#include <QDateTime>

namespace brellin {

namespace {

constexpr std::uint16_t makeTag = 0x010F;
constexpr std::uint16_t modelTag = 0x0110;
constexpr std::uint16_t cameraFolderTag = 0x8769;
constexpr std::uint16_t takenTag = 0x9003;
constexpr std::uint16_t textType = 2;
constexpr int mostFields = 1000;
constexpr qsizetype fieldSize = 12;

/// One directory (IFD) of an EXIF block.
class Fields {
public:
    Fields(const Bytes &block, qsizetype at) : m_block(block), m_at(at) {}

    std::uint32_t number(std::uint16_t tag) const
    {
        const qsizetype field = find(tag);
        return field < 0 ? 0 : m_block.number32(field + 8);
    }
    QString text(std::uint16_t tag) const
    {
        const qsizetype field = find(tag);
        if (field < 0 || m_block.number16(field + 2) != textType)
            return {};
        const qsizetype length = m_block.number32(field + 4);
        // Values of up to four bytes are stored inline.
        const qsizetype at = length <= 4 ? field + 8 : qsizetype(m_block.number32(field + 8));
        const QByteArray bytes = m_block.part(at, std::min<qsizetype>(length, 200)).toByteArray();
        return QString::fromUtf8(bytes.left(bytes.indexOf('\0'))).simplified();
    }

private:
    qsizetype find(std::uint16_t tag) const
    {
        const int count = std::min<int>(m_block.number16(m_at), mostFields);
        for (int i = 0; i < count; ++i) {
            const qsizetype field = m_at + 2 + i * fieldSize;
            if (field + fieldSize <= m_block.size() && m_block.number16(field) == tag)
                return field;
        }
        return -1;
    }

    const Bytes &m_block;
    const qsizetype m_at;
};

/// Joins make and model without repetition: "NIKON CORPORATION", "NIKON D90" is "NIKON D90"; "Canon", "EOS R5" is
/// "Canon EOS R5".
QString cameraName(const QString &make, const QString &model)
{
    const QString firstWord = make.section(u' ', 0, 0);
    if (model.isEmpty() || firstWord.isEmpty() || model.startsWith(firstWord, Qt::CaseInsensitive))
        return model.isEmpty() ? make : model;
    return make + u' ' + model;
}

} // namespace

QJsonObject exifFacts(QByteArrayView bytes)
{
    const Bytes block(bytes, bytes.startsWith('I') ? std::endian::little : std::endian::big);
    if (block.size() < 8)
        return {};
    const Fields main(block, block.number32(4));
    QJsonObject facts;
    if (const QString camera = cameraName(main.text(makeTag), main.text(modelTag)); !camera.isEmpty())
        facts.insert(QStringLiteral("camera"), camera);
    const Fields ofCamera(block, main.number(cameraFolderTag));
    const QDateTime taken = QDateTime::fromString(ofCamera.text(takenTag), QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    if (taken.isValid())
        facts.insert(QStringLiteral("taken"), taken.toString(Qt::ISODate));
    return facts;
}

} // namespace brellin

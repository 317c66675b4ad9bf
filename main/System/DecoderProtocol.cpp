#include "System/DecoderProtocol.h"

#include <QList>
#include <QtEndian>

#include <algorithm>

namespace brellin {

namespace {

constexpr qsizetype pictureHead = 9;
constexpr char done = '+';
constexpr char failed = '-';
constexpr char notOpened = '?';

} // namespace

QByteArray bytesOf(const DecodedPicture &picture)
{
    QByteArray bytes = lengthInFront(picture.width) + lengthInFront(picture.height);
    bytes.reserve(pictureHead + picture.pixels.size());
    bytes += picture.opaque ? '\1' : '\0';
    return bytes += picture.pixels;
}

std::optional<DecodedPicture> pictureFrom(const QByteArray &bytes)
{
    if (bytes.size() < pictureHead)
        return std::nullopt;
    const qsizetype width = lengthFrom(bytes.constData());
    const qsizetype height = lengthFrom(bytes.constData() + 4);
    const bool sound = width > 0 && height > 0 && width <= mostPictureSide && height <= mostPictureSide;
    if (!sound || bytes.size() != pictureHead + width * height * 4)
        return std::nullopt;
    return DecodedPicture{static_cast<int>(width), static_cast<int>(height), bytes[8] == '\1', bytes.mid(pictureHead)};
}

QByteArray bytesOf(const DecoderRequest &request)
{
    QByteArray bytes = QByteArray::fromStdString(request.word);
    for (const std::string &argument : request.arguments) {
        bytes += '\0';
        bytes += QByteArray::fromStdString(argument);
    }
    return bytes;
}

DecoderRequest requestFrom(const QByteArray &bytes)
{
    const QList<QByteArray> words = bytes.split('\0');
    DecoderRequest request{words.first().toStdString(), {}};
    std::for_each(words.begin() + 1, words.end(),
                  [&](const QByteArray &word) { request.arguments.push_back(word.toStdString()); });
    return request;
}

QByteArray bytesOf(const Result<QByteArray> &answer)
{
    if (answer)
        return done + *answer;
    return (isUndecodable(answer.error()) ? failed : notOpened) + answer.error().message.toUtf8();
}

Result<QByteArray> answerFrom(const QByteArray &bytes)
{
    if (bytes.startsWith(done))
        return bytes.mid(1);
    return failure(bytes.startsWith(notOpened) ? unreadable() : undecodable());
}

QByteArray lengthInFront(qsizetype length)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(length), bytes.data());
    return bytes;
}

qsizetype lengthFrom(const char *fourBytes)
{
    return static_cast<qsizetype>(qFromLittleEndian<quint32>(fourBytes));
}

Failure undecodable()
{
    return {QStringLiteral("Die Datei ist beschädigt oder von unbekannter Art."),
            std::make_error_code(std::errc::illegal_byte_sequence)};
}

bool isUndecodable(const Failure &failure)
{
    return failure.is(std::errc::illegal_byte_sequence);
}

Failure unreadable()
{
    return {QStringLiteral("Die Datei lässt sich nicht lesen."), std::make_error_code(std::errc::permission_denied)};
}

} // namespace brellin

#include "System/ArchiveStream.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace brellin::archiveStream {

namespace {

constexpr auto version = QDataStream::Qt_6_0;

QByteArray bytesOf(const std::string &text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

bool isKnown(char kind)
{
    constexpr std::array kinds{Message::Entry,    Message::Data, Message::Spoilt,
                               Message::Position, Message::End,  Message::Failure};
    return std::ranges::find(kinds, static_cast<Message>(kind)) != kinds.end();
}

} // namespace

QByteArray head(Message kind, qsizetype size)
{
    QByteArray bytes(headSize, static_cast<char>(kind));
    qToLittleEndian(static_cast<quint32>(size), bytes.data() + 1);
    return bytes;
}

std::optional<Head> headFrom(const char *bytes)
{
    const qsizetype size = qFromLittleEndian<quint32>(bytes + 1);
    if (!isKnown(*bytes) || size > longest)
        return std::nullopt;
    return Head{static_cast<Message>(*bytes), size};
}

QByteArray bytesOf(const ArchivedEntry &entry)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << static_cast<quint8>(entry.kind) << bytesOf(entry.path) << bytesOf(entry.target) << entry.mode
           << entry.size.has_value() << static_cast<qint64>(entry.size.value_or(0)) << entry.modified.has_value()
           << static_cast<qint64>(entry.modified.value_or(Instant()).time_since_epoch().count());
    return bytes;
}

std::optional<ArchivedEntry> entryFrom(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    quint8 kind = 0;
    QByteArray path;
    QByteArray target;
    bool hasSize = false;
    bool hasTime = false;
    qint64 size = 0;
    qint64 time = 0;
    ArchivedEntry entry;
    stream >> kind >> path >> target >> entry.mode >> hasSize >> size >> hasTime >> time;
    if (stream.status() != QDataStream::Ok || !stream.atEnd() ||
        kind > static_cast<quint8>(ArchivedEntry::Kind::Special))
        return std::nullopt;
    entry.kind = static_cast<ArchivedEntry::Kind>(kind);
    // A path ends at the first NUL.
    entry.path = path.constData();
    entry.target = target.constData();
    if (hasSize && size >= 0)
        entry.size = size;
    if (hasTime)
        entry.modified = Instant(std::chrono::nanoseconds(time));
    return entry;
}

QByteArray bytesOf(std::int64_t number)
{
    QByteArray bytes(numberSize, '\0');
    qToLittleEndian(static_cast<qint64>(number), bytes.data());
    return bytes;
}

std::optional<std::int64_t> numberFrom(const QByteArray &bytes)
{
    if (bytes.size() < numberSize)
        return std::nullopt;
    const auto number = qFromLittleEndian<qint64>(bytes.constData());
    return number < 0 ? std::nullopt : std::optional<std::int64_t>(number);
}

} // namespace brellin::archiveStream

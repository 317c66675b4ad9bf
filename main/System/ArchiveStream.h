#pragma once

#include "Base/Instant.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>

/// How `brellin-bild` hands over what an archive holds: message by message, to whoever unpacks it. It may have been taken over
/// by what it reads: nothing of it is to be trusted.
namespace brellin {

/// One entry of an archive as it says itself.
struct ArchivedEntry {
    enum class Kind { File, Folder, Link, HardLink, Special };
    Kind kind = Kind::File;
    std::string path;   ///< bytes
    std::string target; ///< of a link; of a hard link the path of another entry
    std::uint32_t mode = 0;
    std::optional<std::int64_t> size;
    std::optional<Instant> modified;

    bool operator==(const ArchivedEntry &) const = default;
};

namespace archiveStream {

enum class Message : char {
    Entry = 'e',
    Data = 'd',     ///< of the entry before: its place there, then the bytes; what no message names is a hole
    Spoilt = 'b',   ///< the entry before: its content is not what the archive says of it
    Position = 'p', ///< how much of the archive has been read
    End = 'z',      ///< of the whole archive; with one byte where its end mark is missing
    Failure = 'f'   ///< why it cannot be read further, in words
};

/// A message begins with its kind and, in four bytes, its length.
constexpr qsizetype headSize = 5;
constexpr qsizetype longest = 1 << 20;
QByteArray head(Message kind, qsizetype size);
struct Head {
    Message kind = Message::End;
    qsizetype size = 0;
};
/// Nothing where there can be no such message.
std::optional<Head> headFrom(const char *bytes);

QByteArray bytesOf(const ArchivedEntry &entry);
std::optional<ArchivedEntry> entryFrom(const QByteArray &bytes);

/// A place in a file, or a length; never negative.
constexpr qsizetype numberSize = 8;
QByteArray bytesOf(std::int64_t number);
std::optional<std::int64_t> numberFrom(const QByteArray &bytes);

} // namespace archiveStream

} // namespace brellin

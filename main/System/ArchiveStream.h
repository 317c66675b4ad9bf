#pragma once

#include "Base/Instant.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>

/// The messages in which `brellin-bild` streams an archive's contents to the unpacking process. The decoder may have
/// been taken over by the archive, so nothing it sends can be trusted.
namespace brellin {

/// One entry as the archive describes it.
struct ArchivedEntry {
    enum class Kind { File, Folder, Link, HardLink, Special };
    Kind kind = Kind::File;
    std::string path;   ///< raw bytes
    std::string target; ///< of a link; for a hard link the path of another entry
    std::uint32_t mode = 0;
    std::optional<std::int64_t> size;
    std::optional<Instant> modified;

    bool operator==(const ArchivedEntry &) const = default;
};

namespace archiveStream {

enum class Message : char {
    Entry = 'e',
    Data = 'd',     ///< data of the last entry: offset, then the bytes; ranges without a message are holes
    Spoilt = 'b',   ///< the last entry's content does not match its checksum or length
    Position = 'p', ///< number of archive bytes read so far
    End = 'z',      ///< end of the archive; with one byte if its end marker is missing
    Failure = 'f'   ///< why reading stopped, as text
};

/// A message starts with its kind (one byte) and its length (four bytes).
constexpr qsizetype headSize = 5;
constexpr qsizetype longest = 1 << 20;
QByteArray head(Message kind, qsizetype size);
struct Head {
    Message kind = Message::End;
    qsizetype size = 0;
};
/// nullopt for an invalid message.
std::optional<Head> headFrom(const char *bytes);

QByteArray bytesOf(const ArchivedEntry &entry);
std::optional<ArchivedEntry> entryFrom(const QByteArray &bytes);

/// An offset or length; never negative.
constexpr qsizetype numberSize = 8;
QByteArray bytesOf(std::int64_t number);
std::optional<std::int64_t> numberFrom(const QByteArray &bytes);

} // namespace archiveStream

} // namespace brellin

#include "Decoding/ArchiveEntries.h"

#include "System/ArchiveStream.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <memory>

#include <archive.h>
#include <archive_entry.h>
#include <unistd.h>

namespace brellin {

namespace {

using namespace archiveStream;
using Kind = ArchivedEntry::Kind;

constexpr std::size_t unpackingBlock = 128 * 1024;
/// Coalesces small messages, since each write wakes the reader.
constexpr qsizetype togetherAtMost = 256 * 1024;

/// A name's raw bytes, or its UTF-8 form if the format has no bytes.
std::string bytesOf(const char *bytes, const char *text)
{
    return bytes ? bytes : text ? text : "";
}

Kind kindOf(archive_entry *entry)
{
    if (::archive_entry_hardlink(entry) || ::archive_entry_hardlink_utf8(entry))
        return Kind::HardLink;
    switch (::archive_entry_filetype(entry)) {
    case AE_IFREG:
        return Kind::File;
    case AE_IFDIR:
        return Kind::Folder;
    case AE_IFLNK:
        return Kind::Link;
    default:
        return Kind::Special;
    }
}

ArchivedEntry archivedEntry(archive_entry *entry)
{
    ArchivedEntry record;
    record.kind = kindOf(entry);
    record.path = bytesOf(::archive_entry_pathname(entry), ::archive_entry_pathname_utf8(entry));
    if (record.kind == Kind::HardLink)
        record.target = bytesOf(::archive_entry_hardlink(entry), ::archive_entry_hardlink_utf8(entry));
    else if (record.kind == Kind::Link)
        record.target = bytesOf(::archive_entry_symlink(entry), ::archive_entry_symlink_utf8(entry));
    record.mode = ::archive_entry_perm(entry);
    if (::archive_entry_size_is_set(entry) != 0)
        record.size = ::archive_entry_size(entry);
    if (::archive_entry_mtime_is_set(entry) != 0)
        record.modified = instantFrom({::archive_entry_mtime(entry), ::archive_entry_mtime_nsec(entry)});
    return record;
}

class ArchiveWriter {
public:
    explicit ArchiveWriter(int out) : m_out(out) {}

    bool say(Message kind, const QByteArray &content)
    {
        m_waiting += head(kind, content.size()) + content;
        return m_waiting.size() < togetherAtMost || flush();
    }
    bool data(const char *bytes, std::size_t size, std::int64_t at)
    {
        constexpr std::size_t most = longest - numberSize;
        while (size > 0) {
            const std::size_t piece = std::min(size, most);
            m_waiting += head(Message::Data, numberSize + static_cast<qsizetype>(piece)) + archiveStream::bytesOf(at);
            m_waiting.append(bytes, static_cast<qsizetype>(piece));
            if (m_waiting.size() >= togetherAtMost && !flush())
                return false;
            bytes += piece;
            size -= piece;
            at += static_cast<std::int64_t>(piece);
        }
        return true;
    }
    bool flush()
    {
        for (qsizetype written = 0; written < m_waiting.size();) {
            const ssize_t length =
                ::write(m_out, m_waiting.constData() + written, static_cast<std::size_t>(m_waiting.size() - written));
            if (length <= 0 && !(length < 0 && errno == EINTR))
                return false;
            written += std::max<ssize_t>(length, 0);
        }
        m_waiting.clear();
        return true;
    }

private:
    const int m_out;
    QByteArray m_waiting;
};

using Archive = std::unique_ptr<archive, int (*)(archive *)>;

/// Only readers that work in this process and start no programs.
Archive newUnpackingArchive()
{
    Archive reader(::archive_read_new(), ::archive_read_free);
    for (const auto support :
         {::archive_read_support_format_zip, ::archive_read_support_format_tar, ::archive_read_support_filter_gzip,
          ::archive_read_support_filter_bzip2, ::archive_read_support_filter_xz, ::archive_read_support_filter_lzma,
          ::archive_read_support_filter_zstd, ::archive_read_support_filter_lz4,
          ::archive_read_support_filter_compress})
        support(reader.get());
    return reader;
}

bool isGood(int state)
{
    return state == ARCHIVE_OK || state == ARCHIVE_WARN;
}

QString whyNot(archive *reader)
{
    if (::archive_read_has_encrypted_entries(reader) > 0)
        return QStringLiteral("Das Archiv ist mit einem Passwort geschützt.");
    const char *why = ::archive_error_string(reader);
    return QStringLiteral("Das Archiv ist beschädigt. (%1)").arg(QString::fromLocal8Bit(why ? why : ""));
}

/// Returns the final state of the reader. A warning while reading content means a wrong checksum or length.
int streamContent(archive *reader, ArchiveWriter &writer, bool &written)
{
    bool spoilt = false;
    for (;;) {
        const void *bytes = nullptr;
        std::size_t size = 0;
        std::int64_t at = 0;
        const int state = ::archive_read_data_block(reader, &bytes, &size, &at);
        if (state == ARCHIVE_EOF && spoilt)
            written = written && writer.say(Message::Spoilt, {});
        if (!isGood(state))
            return state;
        spoilt = spoilt || state == ARCHIVE_WARN;
        written = written && writer.data(static_cast<const char *>(bytes), size, at) &&
                  writer.say(Message::Position, archiveStream::bytesOf(::archive_filter_bytes(reader, -1)));
        if (!written)
            return ARCHIVE_FATAL;
    }
}

/// Whether a tar archive was cut off after an entry: it should end with empty blocks, so something must have been read
/// after the last entry.
bool endMarkMissing(archive *reader)
{
    return (::archive_format(reader) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR &&
           ::archive_filter_bytes(reader, 0) <= ::archive_read_header_position(reader);
}

/// Returns the final state of the reader: end of archive, or an error.
int streamEntries(archive *reader, ArchiveWriter &writer, ArchiveContents contents, bool &written)
{
    for (;;) {
        archive_entry *entry = nullptr;
        const int state = ::archive_read_next_header(reader, &entry);
        if (!isGood(state))
            return state;
        const ArchivedEntry record = archivedEntry(entry);
        written = written && writer.say(Message::Entry, archiveStream::bytesOf(record));
        if (!written)
            return ARCHIVE_FATAL;
        if (contents == ArchiveContents::Skipped || record.kind != Kind::File)
            continue;
        if (const int ended = streamContent(reader, writer, written); ended != ARCHIVE_EOF)
            return ended;
    }
}

} // namespace

bool streamArchive(int file, int out, ArchiveContents contents)
{
    const Archive reader = newUnpackingArchive();
    ArchiveWriter writer(out);
    if (::archive_read_open_fd(reader.get(), file, unpackingBlock) != ARCHIVE_OK)
        return writer.say(Message::Failure,
                          QStringLiteral("Das ist kein Archiv, das sich entpacken lässt.").toUtf8()) &&
               writer.flush();
    bool written = true;
    if (streamEntries(reader.get(), writer, contents, written) == ARCHIVE_EOF)
        return writer.say(Message::End, endMarkMissing(reader.get()) ? "-" : "") && writer.flush();
    return written && writer.say(Message::Failure, whyNot(reader.get()).toUtf8()) && writer.flush();
}

} // namespace brellin

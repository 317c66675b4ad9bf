#include "Decoding/ArchiveListing.h"

#include "System/DecoderProtocol.h"

#include <QJsonArray>

#include <archive.h>
#include <archive_entry.h>

#include <memory>

namespace brellin {

namespace {

constexpr qsizetype mostEntries = 5000;
constexpr qsizetype longestName = 1024;
constexpr std::size_t readingBlock = 64 * 1024;

using Archive = std::unique_ptr<archive, int (*)(archive *)>;

/// Readers of common formats, all in this process: none starts a program.
Archive newArchive()
{
    Archive reader(::archive_read_new(), ::archive_read_free);
    for (const auto support :
         {::archive_read_support_format_zip, ::archive_read_support_format_tar, ::archive_read_support_format_7zip,
          ::archive_read_support_format_rar, ::archive_read_support_format_rar5, ::archive_read_support_format_cpio,
          ::archive_read_support_format_iso9660, ::archive_read_support_filter_gzip,
          ::archive_read_support_filter_bzip2, ::archive_read_support_filter_xz, ::archive_read_support_filter_lzma,
          ::archive_read_support_filter_zstd, ::archive_read_support_filter_lz4,
          ::archive_read_support_filter_compress})
        support(reader.get());
    return reader;
}

QString nameOf(archive_entry *entry)
{
    const char *text = ::archive_entry_pathname_utf8(entry);
    if (!text)
        text = ::archive_entry_pathname(entry);
    return QString::fromUtf8(text ? text : "").left(longestName);
}

QJsonObject recordOf(archive_entry *entry)
{
    QJsonObject record{{QStringLiteral("name"), nameOf(entry)}};
    const bool folder = ::archive_entry_filetype(entry) == AE_IFDIR;
    if (folder)
        record.insert(QStringLiteral("folder"), true);
    else if (::archive_entry_size_is_set(entry) != 0)
        record.insert(QStringLiteral("size"), static_cast<qint64>(::archive_entry_size(entry)));
    return record;
}

} // namespace

Result<QJsonObject> archiveListing(int file)
{
    const Archive reader = newArchive();
    if (::archive_read_open_fd(reader.get(), file, readingBlock) != ARCHIVE_OK)
        return failure(undecodable());
    QJsonArray entries;
    archive_entry *entry = nullptr;
    int state = ARCHIVE_OK;
    while (entries.size() <= mostEntries) {
        state = ::archive_read_next_header(reader.get(), &entry);
        if (state != ARCHIVE_OK && state != ARCHIVE_WARN)
            break;
        entries.append(recordOf(entry));
    }
    // List what could be read of a truncated archive.
    if (state != ARCHIVE_EOF && state != ARCHIVE_OK && state != ARCHIVE_WARN && entries.isEmpty())
        return failure(undecodable());
    const bool more = entries.size() > mostEntries;
    if (more)
        entries.removeLast();
    const bool damaged = state == ARCHIVE_FATAL || state == ARCHIVE_FAILED;
    return QJsonObject{
        {QStringLiteral("entries"), entries}, {QStringLiteral("more"), more}, {QStringLiteral("damaged"), damaged}};
}

} // namespace brellin

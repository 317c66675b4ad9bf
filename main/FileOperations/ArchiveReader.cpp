#include "FileOperations/ArchiveReader.h"

#include <archive.h>
#include <archive_entry.h>

#include <utility>

#include <sys/stat.h>

namespace brellin {

namespace {

constexpr std::size_t readingBlock = 128 * 1024;

/// A name is bytes; where it can only be had as text, its UTF-8.
std::string bytesOf(const char *bytes, const char *text)
{
    return bytes ? bytes : text ? text : "";
}

ArchivedEntry::Kind kindOf(archive_entry *entry)
{
    if (::archive_entry_hardlink(entry) || ::archive_entry_hardlink_utf8(entry))
        return ArchivedEntry::Kind::HardLink;
    switch (::archive_entry_filetype(entry)) {
    case AE_IFREG:
        return ArchivedEntry::Kind::File;
    case AE_IFDIR:
        return ArchivedEntry::Kind::Folder;
    case AE_IFLNK:
        return ArchivedEntry::Kind::Link;
    default:
        return ArchivedEntry::Kind::Special;
    }
}

ArchivedEntry recordOf(archive_entry *entry)
{
    ArchivedEntry record;
    record.kind = kindOf(entry);
    record.path = bytesOf(::archive_entry_pathname(entry), ::archive_entry_pathname_utf8(entry));
    if (record.kind == ArchivedEntry::Kind::HardLink)
        record.target = bytesOf(::archive_entry_hardlink(entry), ::archive_entry_hardlink_utf8(entry));
    else if (record.kind == ArchivedEntry::Kind::Link)
        record.target = bytesOf(::archive_entry_symlink(entry), ::archive_entry_symlink_utf8(entry));
    record.mode = ::archive_entry_perm(entry);
    if (::archive_entry_size_is_set(entry) != 0)
        record.size = ::archive_entry_size(entry);
    if (::archive_entry_mtime_is_set(entry) != 0)
        record.modified = instantFrom({::archive_entry_mtime(entry), ::archive_entry_mtime_nsec(entry)});
    return record;
}

} // namespace

ArchiveReader::ArchiveReader(Descriptor file, std::int64_t size, Handle handle)
    : m_file(std::move(file))
    , m_size(size)
    , m_handle(std::move(handle))
{
}

Result<ArchiveReader> ArchiveReader::open(const Location &file)
{
    const EntryPlace place = TRY(openPlace(file));
    Descriptor opened = TRY(openForReading(place.at()));
    struct stat status{};
    if (::fstat(opened.number(), &status) != 0)
        return failure(Failure::lastSystem());
    // All of them work in this process: none calls another program.
    Handle handle(::archive_read_new(), ::archive_read_free);
    for (const auto support :
         {::archive_read_support_format_zip, ::archive_read_support_format_tar, ::archive_read_support_filter_gzip,
          ::archive_read_support_filter_bzip2, ::archive_read_support_filter_xz, ::archive_read_support_filter_lzma,
          ::archive_read_support_filter_zstd, ::archive_read_support_filter_lz4,
          ::archive_read_support_filter_compress})
        support(handle.get());
    if (::archive_read_open_fd(handle.get(), opened.number(), readingBlock) != ARCHIVE_OK)
        return failure(QStringLiteral("Das ist kein Archiv, das sich entpacken lässt."));
    return ArchiveReader(std::move(opened), status.st_size, std::move(handle));
}

Failure ArchiveReader::failureNow() const
{
    if (::archive_read_has_encrypted_entries(m_handle.get()) > 0)
        return {QStringLiteral("Das Archiv ist mit einem Passwort geschützt."), {}};
    const char *why = ::archive_error_string(m_handle.get());
    return {QStringLiteral("Das Archiv ist beschädigt. (%1)").arg(QString::fromLocal8Bit(why ? why : "")), {}};
}

Result<std::optional<ArchivedEntry>> ArchiveReader::next()
{
    const int state = ::archive_read_next_header(m_handle.get(), &m_entry);
    if (state == ARCHIVE_EOF)
        return std::nullopt;
    if (state != ARCHIVE_OK && state != ARCHIVE_WARN)
        return failure(failureNow());
    return std::optional(recordOf(m_entry));
}

Result<void>
ArchiveReader::content(const std::function<Result<void>(const char *bytes, std::size_t size, std::int64_t at)> &take)
{
    for (;;) {
        const void *bytes = nullptr;
        std::size_t size = 0;
        std::int64_t at = 0;
        const int state = ::archive_read_data_block(m_handle.get(), &bytes, &size, &at);
        if (state == ARCHIVE_EOF)
            return {};
        if (state != ARCHIVE_OK && state != ARCHIVE_WARN)
            return failure(failureNow());
        TRY(take(static_cast<const char *>(bytes), size, at));
    }
}

std::int64_t ArchiveReader::bytesRead() const
{
    return ::archive_filter_bytes(m_handle.get(), -1);
}

} // namespace brellin

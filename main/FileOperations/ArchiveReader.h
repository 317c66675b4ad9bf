#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "FileOperations/ArchiveProcess.h"
#include "System/ArchiveStream.h"

#include <functional>
#include <optional>

namespace brellin {

/// Reads a ZIP or tar archive entry by entry in a confined process, so that a malicious archive can only make this
/// reading fail. Not thread-safe; a cancel kills the process, and every call fails from then on.
class ArchiveReader {
public:
    enum class Wanted { Names, Contents };

    /// `program` is "…/brellin-bild". `control` must outlive the reader.
    static Result<ArchiveReader> open(const Location &program, const Location &file, Wanted wanted,
                                      const JobControl &control);

    /// The next entry, none at the end. Skips content not read of the current one.
    Result<std::optional<ArchivedEntry>> next();
    /// Passes the current entry's content to `take` in pieces with their offsets; offsets not covered are holes.
    /// Returns `Spoilt` if checksum or length do not match the archive's.
    enum class Content { Whole, Spoilt };
    Result<Content>
    content(const std::function<Result<void>(const char *bytes, std::size_t size, std::int64_t at)> &take);

    /// After the last entry: whether the archive's end mark is missing.
    bool isCut() const { return m_cut; }

    /// Bytes of the archive read so far, and its size.
    std::int64_t bytesRead() const { return m_read; }
    std::int64_t bytesInAll() const { return m_size; }

private:
    struct Heard {
        archiveStream::Message kind = archiveStream::Message::End;
        QByteArray content;
    };
    ArchiveReader(ArchiveProcess process, std::int64_t size) : m_process(std::move(process)), m_size(size) {}
    /// The next message other than Position.
    Result<Heard> hear();

    ArchiveProcess m_process;
    std::int64_t m_size;
    std::int64_t m_read = 0;
    bool m_cut = false;
    std::optional<Heard> m_ahead; ///< read ahead; the message after the last content
};

} // namespace brellin

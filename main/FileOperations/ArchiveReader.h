#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/Descriptor.h"
#include "FileOperations/ArchiveProcess.h"
#include "System/ArchiveStream.h"

#include <functional>
#include <optional>

namespace brellin {

/// Reads a ZIP or tar archive entry by entry, in a process of its own that can do nothing but read: whatever an archive makes
/// of that, only this reading fails. For one thread; a cancel ends the process and every call.
class ArchiveReader {
public:
    enum class Wanted { Names, Contents };

    /// `program` is "…/brellin-bild". `control` outlives the reader.
    static Result<ArchiveReader> open(const Location &program, const Location &file, Wanted wanted,
                                      const JobControl &control);

    /// The next entry, nothing at the end.
    Result<std::optional<ArchivedEntry>> next();
    /// The content of the entry at hand, piece by piece with its place; a place that no piece names is a hole. `Spoilt` where
    /// it turned out not to be what the archive says of it, by checksum or length.
    enum class Content { Whole, Spoilt };
    Result<Content>
    content(const std::function<Result<void>(const char *bytes, std::size_t size, std::int64_t at)> &take);

    /// Whether the archive, at its end, lacks the mark that it is complete.
    bool isCut() const { return m_cut; }

    /// How much of the archive has been read, and how long it is.
    std::int64_t bytesRead() const { return m_read; }
    std::int64_t bytesInAll() const { return m_size; }

private:
    struct Heard {
        archiveStream::Message kind = archiveStream::Message::End;
        QByteArray content;
    };
    ArchiveReader(ArchiveProcess process, std::int64_t size) : m_process(std::move(process)), m_size(size) {}
    /// The next message but for those about the position.
    Result<Heard> hear();

    ArchiveProcess m_process;
    std::int64_t m_size;
    std::int64_t m_read = 0;
    bool m_cut = false;
    std::optional<Heard> m_ahead; ///< what ended the content of the entry before
};

} // namespace brellin

#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/Descriptor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

struct archive;
struct archive_entry;

namespace brellin {

/// One entry of an archive as it says itself: nothing of it is to be trusted.
struct ArchivedEntry {
    enum class Kind { File, Folder, Link, HardLink, Special };
    Kind kind = Kind::File;
    std::string path;   ///< bytes
    std::string target; ///< of a link; of a hard link the path of another entry
    std::uint32_t mode = 0;
    std::optional<std::int64_t> size;
    std::optional<Instant> modified;
};

/// Reads a ZIP or tar archive entry by entry. For one thread.
class ArchiveReader {
public:
    static Result<ArchiveReader> open(const Location &file);

    /// The next entry, nothing at the end.
    Result<std::optional<ArchivedEntry>> next();
    /// The content of the entry at hand, piece by piece with its place; a place that no piece names is a hole.
    Result<void> content(const std::function<Result<void>(const char *bytes, std::size_t size, std::int64_t at)> &take);

    /// How much of the archive has been read, and how long it is.
    std::int64_t bytesRead() const;
    std::int64_t bytesInAll() const { return m_size; }

private:
    using Handle = std::unique_ptr<archive, int (*)(archive *)>;
    ArchiveReader(Descriptor file, std::int64_t size, Handle handle);
    Failure failureNow() const;

    Descriptor m_file;
    std::int64_t m_size;
    Handle m_handle;
    archive_entry *m_entry = nullptr;
};

} // namespace brellin

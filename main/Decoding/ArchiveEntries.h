#pragma once

namespace brellin {

enum class ArchiveContents { Skipped, Included };

/// Writes what the open ZIP or tar archive holds to `out`, in the messages of System/ArchiveStream.h. Whether that came to its
/// end.
bool streamArchive(int file, int out, ArchiveContents contents);

} // namespace brellin

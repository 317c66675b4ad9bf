#pragma once

namespace brellin {

enum class ArchiveContents { Skipped, Included };

/// Streams the contents of the open ZIP or tar archive to `out`, as messages of System/ArchiveStream.h. False if they
/// could not be written completely.
bool streamArchive(int file, int out, ArchiveContents contents);

} // namespace brellin

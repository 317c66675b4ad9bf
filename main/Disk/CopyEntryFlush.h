#pragma once

namespace brellin {

/// Flushing calls that differ between systems. They return 0, or -1 with `errno` set.

/// Flushes a file or folder through the disk's cache.
int flushFile(int file);
/// Flushes the whole volume of `file`.
int flushVolume(int file);
/// Whether `flushVolume` works for the volume of `file`. FUSE file systems only flush single files.
bool isFlushedAsAWhole(int file);
/// Drops the cached pages of a flushed file.
int forgetPages(int file);

} // namespace brellin

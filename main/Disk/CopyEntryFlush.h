#pragma once

namespace brellin {

/// What each system calls by another name. 0, or -1 with `errno` set.

/// Writes an open file or folder to the disk, past the disk's own cache.
int flushFile(int file);
/// Writes everything of the volume that `file` lies on.
int flushVolume(int file);
/// Whether `flushVolume` reaches the disk of what `file` lies on. A file system in user space hears of single files only.
bool isFlushedAsAWhole(int file);
/// Lets the system forget its pages of a file that has been written.
int forgetPages(int file);

} // namespace brellin

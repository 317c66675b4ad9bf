#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"

#include <string>
#include <vector>

namespace brellin {

/// A regular file to be compared, in the state in which it was seen.
struct SeenFile {
    std::string path;
    FileState state;
};

/// Indices of files with equal content, ascending.
struct ContentGroup {
    std::vector<std::size_t> files;

    bool operator==(const ContentGroup &) const = default;
};

/// Finds files with equal content; uses several threads and, where possible, reads each file once. A file that cannot
/// be read or has changed since it was seen is in no group. Preserves access times where possible; does not follow
/// links. Incomplete if cancelled.
std::vector<ContentGroup> groupByContent(const std::vector<SeenFile> &files, const JobControl *control = nullptr);

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace brellin {

/// A regular file as somebody saw it, to be compared with others.
struct SeenFile {
    std::string path;
    FileState state;
};

/// Files with the same bytes, by their numbers in the list that was asked about, in rising order.
struct ContentGroup {
    std::vector<std::size_t> files;
    QByteArray digest; ///< SHA-256 of each of them, hexadecimal

    bool operator==(const ContentGroup &) const = default;
};

/// Finds the files that have their content in common with another of the list, several at a time and each read once where
/// that is possible. A file that cannot be read, or that is no longer as it was seen, equals no other. Access times are
/// left alone where the system lets us, links are not followed. Incomplete when cancelled.
std::vector<ContentGroup> groupByContent(const std::vector<SeenFile> &files, const JobControl *control = nullptr);

} // namespace brellin

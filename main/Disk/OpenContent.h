#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace brellin {

/// The content of a regular file that was opened in the state it was seen in. Reads through one descriptor, so that
/// renames do not matter.
class OpenContent {
public:
    /// Fails if the file has changed since it was seen.
    static Result<OpenContent> open(const std::string &path, const FileState &seen);

    /// Whether the file is small, 64 KiB at most.
    bool fitsOnePiece() const;
    /// Hash of the first and last 4 KiB, for telling files apart quickly. Not a digest.
    Result<std::size_t> endsHash() const;
    /// SHA-256, hexadecimal.
    Result<QByteArray> digest(const JobControl *control) const;

    /// Compares files of one size byte by byte, reading each once. False also if one cannot be read completely, or if
    /// cancelled.
    static bool areEqual(const std::vector<const OpenContent *> &files, const JobControl *control);

private:
    OpenContent(Descriptor file, std::int64_t size) : m_file(std::move(file)), m_size(size) {}
    Result<void> read(std::int64_t offset, char *into, std::size_t size) const;

    Descriptor m_file;
    std::int64_t m_size;
};

} // namespace brellin

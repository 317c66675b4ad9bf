#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"

#include <QByteArray>

#include <string>
#include <vector>

namespace brellin {

/// The content of a regular file that was opened as the one that somebody saw. Everything is read through this handle, so
/// that it is that file's whatever becomes of its name.
class OpenContent {
public:
    /// Fails where the file is no longer as it was seen.
    static Result<OpenContent> open(const std::string &path, const FileState &seen);

    /// Whether all of it is read at once.
    bool fitsOnePiece() const;
    /// A hash of its first and its last 4 KiB: files that differ there are told apart, nothing more. No digest.
    Result<std::size_t> endsHash() const;
    /// SHA-256, hexadecimal.
    Result<QByteArray> digest(const JobControl *control) const;

    /// Compares files of one size byte by byte. The SHA-256 of each of them, read once; empty where they are not all the
    /// same, where one cannot be read to its end, and when cancelled.
    static QByteArray commonDigest(const std::vector<const OpenContent *> &files, const JobControl *control);

private:
    OpenContent(Descriptor file, std::int64_t size) : m_file(std::move(file)), m_size(size) {}
    Result<void> read(std::int64_t offset, char *into, std::size_t size) const;

    Descriptor m_file;
    std::int64_t m_size;
};

} // namespace brellin

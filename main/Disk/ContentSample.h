#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QByteArray>

#include <cstdint>

namespace brellin {

/// A cheap look at a file's content that tells most different files apart.
struct ContentSample {
    QByteArray digest;  ///< SHA-256, hexadecimal, of what was read
    bool whole = false; ///< the file is so small that all of it was read: this is the digest of its content

    bool operator==(const ContentSample &) const = default;
};

/// Reads the first and the last 4 KiB of a regular file of `size` bytes. Access times and links as with `sha256`.
Result<ContentSample> sampleContent(const Location &file, std::int64_t size);

} // namespace brellin

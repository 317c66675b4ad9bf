#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Features/ThumbnailPng.h"

#include <QByteArray>

#include <optional>

namespace brellin {

/// The user's shared thumbnail cache (freedesktop.org): one PNG file per picture and size, named after the file's URI.
/// Its contents may disappear at any time. Thread-safe.
class ThumbnailCache {
public:
    /// `folder` is "…/thumbnails" in the user's cache folder.
    explicit ThumbnailCache(Location folder) : m_folder(std::move(folder)) {}
    /// The cache folder of this account.
    static Location usualFolder();

    /// The cached size for a wanted one: 128, 256, 512 or 1024.
    static int keptSide(int wanted);
    /// A file's URI as other programs write it; preserves every byte of the name.
    static QByteArray uri(const Location &file);

    struct Found {
        Location png;
        bool ours = false; ///< written by this program, so its content can be trusted

        bool operator==(const Found &) const = default;
    };
    /// A thumbnail of the file as of `modified`, at least `keptSide(side)` in size.
    std::optional<Found> find(const Location &file, Instant modified, int side) const;
    /// Whether this program has failed on this version of the file before.
    bool hasFailed(const Location &file, Instant modified) const;

    /// Stores a thumbnail and returns its path; nullopt if it cannot be written, which does no harm.
    std::optional<Location> store(const Location &file, Instant modified, int side,
                                  const DecodedPicture &picture) const;
    void storeFailure(const Location &file, Instant modified) const;

    /// Files inside the cache get no thumbnails themselves.
    bool holds(const Location &file) const { return isAtOrBelow(file, m_folder); }

private:
    Location place(const char *kind, const Location &file) const;
    Location failurePlace(const Location &file) const;

    const Location m_folder;
};

} // namespace brellin

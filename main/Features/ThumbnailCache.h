#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Features/ThumbnailPng.h"

#include <QByteArray>

#include <optional>

namespace brellin {

/// The thumbnails that all programs of this user share, as the desktops have agreed: one PNG file per picture and size, named
/// after the address of the file it shows. It may go at any time. Callable from every thread.
class ThumbnailCache {
public:
    /// `folder` is "…/thumbnails" in the user's cache.
    explicit ThumbnailCache(Location folder) : m_folder(std::move(folder)) {}
    /// That of this account.
    static Location usualFolder();

    /// The longest side of the pictures that are kept for a wanted one: 128, 256, 512 or 1024.
    static int keptSide(int wanted);
    /// The address of a file as other programs write it; every byte of its name survives.
    static QByteArray uri(const Location &file);

    struct Found {
        Location png;
        bool ours = false; ///< made by this program: its content can be trusted

        bool operator==(const Found &) const = default;
    };
    /// A picture of the file as it was at `modified`, at least as large as `keptSide(side)` promises.
    std::optional<Found> find(const Location &file, Instant modified, int side) const;
    /// Whether this program has already failed at this file as it was then.
    bool hasFailed(const Location &file, Instant modified) const;

    /// Keeps a picture; gives its place, or nothing where it cannot be written (which is no loss).
    std::optional<Location> store(const Location &file, Instant modified, int side,
                                  const DecodedPicture &picture) const;
    void storeFailure(const Location &file, Instant modified) const;

    /// What lies in the cache has no thumbnails itself.
    bool holds(const Location &file) const { return isAtOrBelow(file, m_folder); }

private:
    Location place(const char *kind, const Location &file) const;
    Location failurePlace(const Location &file) const;

    const Location m_folder;
};

} // namespace brellin

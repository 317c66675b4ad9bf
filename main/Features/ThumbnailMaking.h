#pragma once

#include "Features/ThumbnailCache.h"
#include "System/Decoders.h"

#include <optional>
#include <string_view>

namespace brellin {

/// The wish for the small picture of a file as it was at `modified`, for a square of `side` pixels.
struct ThumbnailWish {
    Location entry;
    Instant modified;
    int side = 128;

    bool operator==(const ThumbnailWish &) const = default;
};

/// What became of a wish.
struct Thumbnail {
    enum class Outcome {
        Made,     ///< the picture is there: as pixels, or as a file of our own in the cache
        None,     ///< there is none of this file as it is
        Changed,  ///< the file is no longer the one that was asked about
        NotNow,   ///< the file could not be read, or the decoder not be started: another day, perhaps
        Cancelled ///< nobody wants it any more
    };
    Outcome outcome = Outcome::None;
    std::optional<DecodedPicture> picture;
    std::optional<Location> png; ///< a PNG file that this program has written
};

/// Whether files with this name can have a thumbnail at all: pictures, PDF files and videos.
bool canHaveThumbnail(std::string_view name);

/// Finds a thumbnail in the cache or has it made. Blocking: called on workers only. Once `control` is cancelled, neither
/// decoder nor cache are touched any more.
Thumbnail makeThumbnail(const ThumbnailWish &wish, const ThumbnailCache &cache, Decoder &decoder,
                        const JobControl &control);

} // namespace brellin

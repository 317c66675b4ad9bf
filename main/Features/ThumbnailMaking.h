#pragma once

#include "Features/ThumbnailCache.h"
#include "System/Decoders.h"

#include <optional>
#include <string_view>

namespace brellin {

/// A request for a thumbnail of a file as of `modified`, to fit a square of `side` pixels.
struct ThumbnailWish {
    Location entry;
    Instant modified;
    int side = 128;

    bool operator==(const ThumbnailWish &) const = default;
};

/// The answer to a request.
struct Thumbnail {
    enum class Outcome {
        Made,     ///< made: as pixels, or as a file in the cache written by this program
        None,     ///< this version of the file has none
        Changed,  ///< the file has changed since the request
        NotNow,   ///< the file could not be read or the decoder not started; may work later
        Cancelled ///< no longer wanted
    };
    Outcome outcome = Outcome::None;
    std::optional<DecodedPicture> picture;
    std::optional<Location> png; ///< a PNG file written by this program
};

/// Whether files of this name can have a thumbnail: pictures, PDFs and videos.
bool canHaveThumbnail(std::string_view name);

/// Finds a thumbnail in the cache or makes it. Blocking: call on workers only. Uses neither decoder nor cache once
/// `control` is cancelled.
Thumbnail makeThumbnail(const ThumbnailWish &wish, const ThumbnailCache &cache, Decoder &decoder,
                        const JobControl &control);

} // namespace brellin

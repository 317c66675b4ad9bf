#pragma once

#include "Base/JobControl.h"
#include "Features/PreviewContent.h"
#include "System/Clock.h"
#include "System/Decoders.h"

namespace brellin {

/// What the preview is to show.
struct PreviewWish {
    Location entry;
    int page = 0;   ///< of a document, from 0
    int side = 512; ///< the longest side of a picture, in device pixels
    bool countsFolders = true;
    Instant now; ///< for "heute"

    bool operator==(const PreviewWish &) const = default;
};

/// The first part: name and attributes. Blocking, as the second is: called on workers only.
PreviewContent beginPreview(const PreviewWish &wish);

/// The second part: puts what the entry holds to what `beginPreview` has found, which may take a while. What comes back after a
/// cancel is of no use. Once `control` is cancelled, the decoder is not touched any more.
PreviewContent completePreview(PreviewContent content, const PreviewWish &wish, Decoder &decoder,
                               const JobControl &control);

} // namespace brellin

#pragma once

#include "Base/JobControl.h"
#include "Features/PreviewContent.h"
#include "System/Clock.h"
#include "System/Decoders.h"

namespace brellin {

/// The input for making a preview.
struct PreviewWish {
    Location entry;
    int page = 0;   ///< of a document, counted from 0
    int side = 512; ///< longest side of a picture in device pixels
    bool countsFolders = true;
    Instant now; ///< the reference for "heute"

    bool operator==(const PreviewWish &) const = default;
};

/// First step: name and attributes. Blocking, as is the second: call on workers only.
PreviewContent beginPreview(const PreviewWish &wish);

/// Second step: adds the content to the result of `beginPreview`, which may take long. The result is undefined after a
/// cancel. Does not use the decoder once `control` is cancelled.
PreviewContent completePreview(PreviewContent content, const PreviewWish &wish, Decoder &decoder,
                               const JobControl &control);

} // namespace brellin

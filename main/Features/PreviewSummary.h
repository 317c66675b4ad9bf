#pragma once

#include "Base/Instant.h"
#include "Features/PreviewContent.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace brellin {

/// Several entries as one: how many of which kinds, and how large.
struct PreviewSummary {
    /// One of the entries at the top of the stack of pictures.
    struct Top {
        Location entry;
        Instant modified;
        bool isFolder = false;

        bool operator==(const Top &) const = default;
    };
    static constexpr std::size_t mostOnTop = 3;

    std::size_t count = 0;
    std::vector<std::pair<QString, std::size_t>> kinds; ///< "PDF-Dokument", 3; the most frequent first
    std::int64_t bytes = 0;
    bool wholeSize = true;  ///< false if `bytes` lacks a folder whose size is not known
    std::vector<Top> onTop; ///< the first ones

    bool operator==(const PreviewSummary &) const = default;
};

/// „3 Elemente“
QString summaryTitle(const PreviewSummary &summary);
/// „1,2 MB“, „mindestens 1,2 MB“
QString summarySize(const PreviewSummary &summary);
/// One row for each kind, the rare ones in one.
std::vector<PreviewFact> summaryFacts(const PreviewSummary &summary);

} // namespace brellin

#pragma once

#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace brellin {

/// One row of what is known about an entry: "Geändert", "heute, 08:40".
struct PreviewFact {
    QString label;
    QString value;
    QString whole; ///< where `value` is a short form, for the tool tip

    bool operator==(const PreviewFact &) const = default;
};

/// Nothing to see but the entry's drawing, and why where that is worth saying.
struct PreviewNothing {
    QString reason;

    bool operator==(const PreviewNothing &) const = default;
};

/// A picture, or a video's.
struct PreviewPicture {
    DecodedPicture picture;

    bool operator==(const PreviewPicture &) const = default;
};

/// One page of a PDF file, from 0.
struct PreviewPage {
    DecodedPicture picture;
    int page = 0;
    int pages = 1;

    bool operator==(const PreviewPage &) const = default;
};

struct PreviewText {
    QString text;
    bool cutOff = false; ///< there is more than is shown

    bool operator==(const PreviewText &) const = default;
};

struct PreviewArchiveEntry {
    QString name;
    std::optional<std::int64_t> size;
    bool folder = false;

    bool operator==(const PreviewArchiveEntry &) const = default;
};

struct PreviewArchive {
    std::vector<PreviewArchiveEntry> entries;
    QString remark; ///< that there are more, or that it is damaged

    bool operator==(const PreviewArchive &) const = default;
};

using PreviewBody = std::variant<PreviewNothing, PreviewPicture, PreviewPage, PreviewText, PreviewArchive>;

/// What the preview shows of one entry. A plain value: nothing in it needs the file any more.
struct PreviewContent {
    enum class State {
        Empty,   ///< there is no entry
        Loading, ///< facts that are known at once; the rest is under way
        Ready,
        Failed ///< the entry cannot be read: `failure` says why
    };
    State state = State::Empty;
    Location entry;
    QString name;
    QString kind;    ///< "PDF-Dokument"
    QString summary; ///< "PDF-Dokument · 184 KB · 2 Seiten"
    bool isFolder = false;
    bool isLink = false;
    bool isSpecial = false; ///< a socket, pipe or device
    PreviewBody body;
    std::vector<PreviewFact> facts;
    QString failure;

    bool operator==(const PreviewContent &) const = default;
};

} // namespace brellin

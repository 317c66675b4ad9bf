#pragma once

#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <QSizeF>
#include <QString>

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace brellin {

/// One row of facts about an entry: "Geändert", "heute, 08:40".
struct PreviewFact {
    QString label;
    QString value;
    QString whole; ///< the full text for the tool tip, if `value` is abbreviated

    bool operator==(const PreviewFact &) const = default;
};

/// No preview, only the entry's icon; with the reason if it is worth showing.
struct PreviewNothing {
    QString reason;

    bool operator==(const PreviewNothing &) const = default;
};

/// A picture, or a frame of a video.
struct PreviewPicture {
    DecodedPicture picture;
    QSizeF whole; ///< in pixels at 100 %; `picture` may be scaled down

    bool operator==(const PreviewPicture &) const = default;
};

/// One page of a PDF, counted from 0.
struct PreviewPage {
    DecodedPicture picture;
    int page = 0;
    int pages = 1;
    QSizeF whole; ///< in pixels at 100 %, which is 96 to the inch

    bool operator==(const PreviewPage &) const = default;
};

struct PreviewText {
    QString text;
    bool cutOff = false; ///< the file continues

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
    QString remark; ///< that there are more, or that the archive is damaged

    bool operator==(const PreviewArchive &) const = default;
};

using PreviewBody = std::variant<PreviewNothing, PreviewPicture, PreviewPage, PreviewText, PreviewArchive>;

/// The preview of one entry as a plain value, independent of the file.
struct PreviewContent {
    enum class State {
        Empty,   ///< no entry
        Loading, ///< only the facts that are known at once
        Ready,
        Failed ///< the entry cannot be read; see `failure`
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

#pragma once

#include <QDateTime>

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// The .trashinfo record of the freedesktop.org Trash: origin and deletion date.
std::string trashInfoText(std::string_view origin, const QDateTime &deleted);

/// The origin in a .trashinfo record as stored: absolute, or relative to the volume's top; none if the text is no
/// record. Also reads records of other programs: a "%" without two hex digits stays as it is.
std::optional<std::string> originInTrashInfo(std::string_view text);

/// The deletion date in the user's time zone; none if missing.
std::optional<QDateTime> deletionInTrashInfo(std::string_view text);

} // namespace brellin

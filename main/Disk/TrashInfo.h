#pragma once

#include <QDateTime>

#include <optional>
#include <string>
#include <string_view>

namespace brellin {

/// The record that a freedesktop.org Trash keeps of an entry: where it came from and when it went.
std::string trashInfoText(std::string_view origin, const QDateTime &deleted);

/// The origin that such a record names (bytes, as stored: absolute, or relative to the volume's top); nullopt where the
/// text is no record. Reads what other programs write, too: "%" without two digits behind it stands for itself.
std::optional<std::string> originInTrashInfo(std::string_view text);

/// When the entry went into the Trash, in the user's time zone; nullopt where the record does not tell.
std::optional<QDateTime> deletionInTrashInfo(std::string_view text);

} // namespace brellin
